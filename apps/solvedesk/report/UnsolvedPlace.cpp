#include "apps/solvedesk/report/UnsolvedPlace.h"

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "apps/solvedesk/console/Console.h"
#include "basekit/value/VariableValues.h"
#include "basekit/value/variation/VariationText.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <fmt/format.h>

#include <algorithm>

namespace solvedesk {
namespace {

constexpr std::size_t kMostValues = 5;

using Values = std::vector<std::pair<AString, AString>>;

std::vector<VariationText> SolvedOf(BaseSolution const & solution) {
  std::vector<VariationText> solved;
  for (auto const & [index, variation] : solution.GetVariations())
    if (AString const text = variation->GetDesignVariationKey();
        solution.HasSolutionData(text, variation->GetVersionID()))
      solved.emplace_back(text);
  return solved;
}

AString VariationOfDesign(BaseSolution const & solution) {
  std::vector<IDesignInstance *> instances;
  if (IDesign const * const design = solution.GetSolutionMgr()->GetIDesign())
    design->GetDesignInstances(instances);
  return instances.empty() ? AString() : instances.front()->GetVariationKey();
}

AString const * Find(Values const & values, AString const & name) {
  auto const at = std::find_if(values.begin(), values.end(),
                               [&name](auto const & value) { return AString::MatchNoCase(value.first, name); });
  return at == values.end() ? nullptr : &at->second;
}

bool Runs(desktop::ReportTable const & table, AString const & name) {
  for (std::size_t i = 0; i < table.VariableCount(); ++i)
    if (AString::MatchNoCase(table.Columns()[i].title, name))
      return true;
  return false;
}

bool IsEqual(AString const & name, AString const & a, AString const & b) {
  return VariableValues::AreVariationKeysEqual(name + L"=" + a, name + L"=" + b);
}

// In the order in which they were solved.
std::vector<AString> ValuesOf(std::vector<VariationText> const & solved, AString const & name) {
  std::vector<AString> values;
  for (VariationText const & variation : solved) {
    VariationText::Pair const * const pair = variation.Find(name.View());
    AString const value = pair ? AString(pair->text) : AString();
    if (pair && std::find(values.begin(), values.end(), value) == values.end())
      values.push_back(value);
  }
  return values;
}

std::string Listed(std::vector<AString> const & values) {
  std::string text;
  for (std::size_t i = 0; i < std::min(kMostValues, values.size()); ++i)
    text += (i == 0 ? "" : ", ") + Utf8(values[i]);
  return values.size() > kMostValues ? fmt::format("{} and {} other values", text, values.size() - kMostValues) : text;
}

} // namespace

UnsolvedPlace::UnsolvedPlace(desktop::LiveReports::Shown const & shown) : m_given(shown.given) {
  if (!shown.solution)
    return;
  std::vector<VariationText> const solved = SolvedOf(*shown.solution);
  AString const ofDesign = VariationOfDesign(*shown.solution);
  VariationText const own(ofDesign);
  for (VariationText::Pair const & pair : own.Pairs()) {
    AString const name(pair.name);
    AString const * const given = Find(shown.given, name);
    Fault const fault{name, given ? *given : AString(pair.text), ValuesOf(solved, name)};
    bool const isSolved = std::any_of(fault.solved.begin(), fault.solved.end(), [&fault](AString const & value) {
      return IsEqual(fault.name, value, fault.value);
    });
    if (Runs(shown.table, name) || fault.solved.empty() || isSolved)
      continue;
    m_faults.push_back(fault);
    m_isOfDesign = m_isOfDesign || !given;
  }
}

std::string UnsolvedPlace::Where() const {
  std::string text;
  Values values;
  for (Fault const & fault : m_faults)
    values.emplace_back(fault.name, fault.value);
  for (auto const & [name, value] : values.empty() ? m_given : values)
    text += (text.empty() ? "" : "; ") + Utf8(name) + "=" + Utf8(value);
  return text;
}

std::string UnsolvedPlace::Instead() const {
  std::string text;
  for (Fault const & fault : m_faults)
    text += fmt::format("{}{} is solved at {}", text.empty() ? "" : ", ", Utf8(fault.name), Listed(fault.solved));
  return text;
}

std::string UnsolvedPlace::Example() const {
  std::string text;
  for (Fault const & fault : m_faults)
    text += (text.empty() ? "" : "; ") + Utf8(fault.name) + "=" + Utf8(fault.solved.front());
  return text;
}

std::string UnsolvedPlace::Names() const {
  std::string text;
  for (Fault const & fault : m_faults)
    text += (text.empty() ? "" : ",") + Utf8(fault.name);
  return text;
}

} // namespace solvedesk
