#include "desktop/reportsetup/SetupParser.h"

#include "CoreInterfaces/reportkern/ISimDataExtractorForReports.h"
#include "plotkit/simvalue/SimValue.h"

namespace desktop {

SetupParser::SetupParser(ISimDataExtractorForReports const & view, SimValueContext const & context, unsigned reportType)
    : m_view(view), m_context(context), m_reportType(reportType) {}

SetupParser::~SetupParser() = default;

ValueState SetupParser::GetValueStateFromText(AString const & text) {
  return m_view.GetQuantityTypeForReports(text, m_context, m_reportType);
}

ValueBase * SetupParser::ParseText(AString const & text) {
  auto const known = m_simValues.find(text);
  if (known != m_simValues.end())
    return known->second.get();
  ValueState const state = GetValueStateFromText(text);
  if (state.parameterType == val::kNotAQuantity)
    return nullptr;
  return m_simValues.emplace(text, std::make_unique<SimValue>(text, m_context, state)).first->second.get();
}

std::vector<AString> SetupParser::GetQuantities() const {
  std::vector<AString> texts;
  for (auto const & [text, value] : m_simValues)
    texts.push_back(text);
  return texts;
}

} // namespace desktop
