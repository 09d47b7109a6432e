#include "desktop/command/SolvedSource.h"

#include "basekit/value/VariableValues.h"
#include "desktop/command/EditLog.h"
#include "desktop/project/SourceBase.h"

namespace desktop {

namespace {

AString const kWith(L" with ");

/// The parts of a text that SolvedSource made.
struct Parts {
  AString fingerprint;
  VariableValues fixed;
};

Value ValueOf(AString const & text) {
  Value value;
  value.SetConstantText(text);
  return value;
}

Parts PartsOf(AString const & source) {
  Parts parts;
  std::size_t const place = source.find(kWith);
  parts.fingerprint = source.substr(0, place);
  if (place != AString::npos)
    VariableValues::ResolveVariationKey(source.substr(place + kWith.size()), nullptr, parts.fixed, nullptr, true);
  return parts;
}

AString TextOf(Parts const & parts) {
  return parts.fixed.empty() ? parts.fingerprint : parts.fingerprint + kWith + parts.fixed.GetVariationKey();
}

} // namespace

std::vector<std::pair<AString, AString>> FixedValues(SourceBase const & base,
                                                     std::function<bool(AString const & name)> const & isOfDesign) {
  std::vector<std::pair<AString, AString>> fixed;
  for (SourceVariable const & variable : base.variables)
    if (!isOfDesign(variable.name))
      fixed.emplace_back(variable.name, variable.value);
  return fixed;
}

AString SolvedSource(SourceBase const & base, std::function<bool(AString const & name)> const & isOfDesign) {
  Parts parts{base.fingerprint, {}};
  for (auto const & [name, text] : FixedValues(base, isOfDesign))
    parts.fixed.Set(name, ValueOf(text));
  return TextOf(parts);
}

std::optional<AString> ValueInSource(SourceBase const & base, AString const & name) {
  for (SourceVariable const & variable : base.variables)
    if (AString::MatchNoCase(variable.name, name))
      return variable.value;
  return std::nullopt;
}

void FixedValueInLog::Fix(EditLog & log) {
  log.ForEachSource([this](VersionedObject const & object, long version, AString & source) {
    if (source.empty()) {
      if (auto const lost = m_lost.find({object, version}); lost != m_lost.end())
        source = lost->second;
      return;
    }
    Parts parts = PartsOf(source);
    parts.fixed.Set(m_name, ValueOf(m_value));
    source = TextOf(parts);
  });
}

void FixedValueInLog::Release(EditLog & log) {
  m_lost.clear();
  log.ForEachSource([this](VersionedObject const & object, long version, AString & source) {
    if (source.empty())
      return;
    Parts parts = PartsOf(source);
    Value const * const fixed = parts.fixed.Find(m_name);
    if (fixed && fixed->GetText() == ValueOf(m_value).GetText()) {
      parts.fixed.Remove(m_name);
      source = TextOf(parts);
    } else {
      m_lost[{object, version}] = source;
      source = AString();
    }
  });
}

} // namespace desktop
