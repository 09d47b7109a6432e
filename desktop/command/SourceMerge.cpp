#include "desktop/command/SourceMerge.h"

#include <algorithm>

namespace desktop {

namespace {

SourceVariable const * FindVariable(SourceBase const & base, AString const & name) {
  for (SourceVariable const & variable : base.variables)
    if (AString::MatchNoCase(variable.name, name))
      return &variable;
  return nullptr;
}

template <class Setups> auto FindSetup(Setups & setups, SourceSetup const & said) {
  return std::find_if(setups.begin(), setups.end(), [&](SourceBase::Setup const & setup) {
    return AString::MatchNoCase(setup.said.name, said.name) && setup.said.typeName == said.typeName;
  });
}

} // namespace

SourceMerge::SourceMerge(SourceBase const & former, SourceBase const & now, Variables const & present,
                         PresentSetups const & setups, Describe const & describe)
    : base(now) {
  MergeVariables(former, now, present);
  MergeSetups(former, setups, describe);
}

void SourceMerge::MergeVariables(SourceBase const & former, SourceBase const & now, Variables const & present) {
  for (auto const & [name, text] : present) {
    SourceVariable const * const said = FindVariable(former, name);
    SourceVariable const * const says = FindVariable(now, name);
    if (said && !says)
      continue;
    AString value = text;
    if (says && (!said || says->value != said->value)) {
      bool const isUsers = said && text != said->value && text != says->value;
      if (isUsers)
        notices.push_back(name + L": set to " + text + L" here and changed from " + said->value + L" to " +
                          says->value + L" by the source; it stays " + text);
      else
        value = says->value;
    }
    variables.emplace_back(name, value);
  }
  for (SourceVariable const & says : now.variables) {
    bool const isThere = std::any_of(present.begin(), present.end(), [&](auto const & variable) {
      return AString::MatchNoCase(variable.first, says.name);
    });
    // One that the user removed stays away.
    if (!isThere && !FindVariable(former, says.name))
      variables.emplace_back(says.name, says.value);
  }
}

void SourceMerge::MergeSetups(SourceBase const & former, PresentSetups const & setups, Describe const & describe) {
  for (SourceBase::Setup const & said : former.setups) {
    auto const says = FindSetup(base.setups, said.said);
    if (says != base.setups.end()) {
      MergeSetup(said, *says, setups, describe);
      continue;
    }
    auto const present = setups.find(said.id);
    if (present == setups.end())
      continue;
    if (present->second.settings == describe(said.said.settings))
      deleted.push_back(said.id);
    else
      notices.push_back(AString(L"setup ") + present->second.name +
                        L": edited here and gone from the source; it stays as it is");
  }
  for (std::size_t i = 0; i < base.setups.size(); ++i)
    if (FindSetup(former.setups, base.setups[i].said) == former.setups.end())
      added.push_back(i);
}

void SourceMerge::MergeSetup(SourceBase::Setup const & former, SourceBase::Setup & now, PresentSetups const & setups,
                             Describe const & describe) {
  now.id = former.id;
  auto const present = setups.find(former.id);
  AString const said = describe(former.said.settings);
  AString const says = describe(now.said.settings);
  if (present == setups.end() || says == said || present->second.settings == says)
    return;
  if (present->second.settings == said)
    edited.emplace(former.id, now.said.settings);
  else
    notices.push_back(AString(L"setup ") + present->second.name + L": edited here to '" + present->second.settings +
                      AString(L"' and by the source to '") + says + L"'; it stays as it is here");
}

} // namespace desktop
