#include "tests/solutionmanager/outputvariables/VariablesFixture.h"

namespace support {

ValueState VariablesExtractor::GetQuantityType(AString const & text, int domain) const {
  ++askedTypes;
  bool const isKnown = text == L"S11" || text == L"S21" || (text == L"Z" && domain == 1);
  return ValueState(Units::kNoUnits, Units::kNoUnitType, 1, isKnown ? val::kComplex : val::kNotAQuantity);
}

SimValue * VariablesExtractor::CreateSimValue(AString const & text, SimValueContext const & context) {
  ValueState const state = GetQuantityType(text, static_cast<int>(context.GetCalculationType()));
  return state.parameterType == val::kNotAQuantity ? nullptr : new SimValue(text, context, state);
}

bool VariablesExtractor::GetExpressionForCannedOutputVariable(AString const & name, AString & expression,
                                                              ValueState & state) const {
  askedForCanned.push_back(name);
  presetStates.push_back(state);
  auto const at = canned.find(name);
  if (at == canned.end())
    return false;
  expression = at->second.text;
  state = at->second.state;
  return true;
}

void VariablesManager::GetValParserList(std::vector<IValueParser *> & parsers, SolutionPointSet *) const {
  // One solution may have no parser of its own.
  parsers.push_back(nullptr);
  if (extractor)
    parsers.push_back(extractor->GetIValueParser());
}

bool VariablesManager::IsValidSimValue(AString const & text) const {
  return extractor && extractor->GetQuantityType(text, 0).parameterType != val::kNotAQuantity;
}

VariablesTest::VariablesTest() {
  m_manager.reset();
  auto manager = std::make_unique<VariablesManager>(&m_design);
  VariablesManager & variables = *manager;
  m_manager = std::move(manager);
  m_manager->InitializeFromDesign(true);
  m_design.ownVariables.variables = {&m_w, &m_h};
  m_setup = &AddSetup(L"Setup1", L"Sweep");
  m_solution = &static_cast<TestSolution &>(SolutionOf(*m_setup));
  m_extractor = variables.extractor = new VariablesExtractor(m_manager.get(), m_solution);
  m_solution->SetExtractor(m_extractor);
}

OutputVariable * VariablesTest::Create(AString const & name, AString const & expression, KelvroCommand * command) {
  OutputVariable * const variable = Manager().CreateOutputVariable(name, expression, command);
  EXPECT_TRUE(variable) << testing::PrintToString(name);
  return variable;
}

std::vector<std::pair<long, AString>> VariablesTest::Told() {
  m_desktop.severities.clear();
  return std::exchange(m_desktop.posted, {});
}

std::vector<AString> VariablesTest::Offered(ISimDataExtractor * extractor, SimValueContext const * context,
                                            OutputVariable * edited) {
  std::vector<OutputVariable *> list;
  Manager().GetOutputVariables(list, extractor, context, edited);
  return NamesOf(list);
}

std::vector<AString> VariablesTest::NamesOf(std::vector<OutputVariable *> const & variables) {
  std::vector<AString> names;
  for (OutputVariable const * const variable : variables)
    names.push_back(variable->GetName());
  return names;
}

} // namespace support
