#pragma once

#include "basekit/command/KelvroCommand.h"
#include "basekit/value/Variable.h"
#include "plotkit/outputvariable/OutputVariable.h"
#include "plotkit/simvalue/SimValue.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

#include <map>

namespace support {

/// An extractor that knows quantities by name: S11 and S21, complex, in every context, Z in those of domain 1 alone.
/// Of the canned variables it has what the test says.
class VariablesExtractor : public BaseSimDataExtractor {
public:
  using BaseSimDataExtractor::BaseSimDataExtractor;
  using BaseSimDataExtractor::CreateSimValue;
  ValueState GetQuantityType(AString const & text, int domain) const override;
  SimValue * CreateSimValue(AString const & text, SimValueContext const & context) override;
  bool GetExpressionForCannedOutputVariable(AString const & name, AString & expression,
                                            ValueState & state) const override;

  struct Canned {
    AString text;
    ValueState state;
  };
  std::map<AString, Canned, AString::NoCaseLess> canned;
  mutable std::vector<AString> askedForCanned;
  mutable std::vector<ValueState> presetStates;
  mutable int askedTypes = 0;
};

class VariablesManager : public TestManager {
public:
  using TestManager::TestManager;
  using TestManager::UpdateAllOutputVariableLegacyText;
  void GetValParserList(std::vector<IValueParser *> & parsers, SolutionPointSet * pointSet) const override;
  bool IsValidSimValue(AString const & text) const override;

  VariablesExtractor * extractor = nullptr;
};

/// A design with the variables w and h, one solution with such an extractor, and verbs for output variables.
class VariablesTest : public ModelTest {
protected:
  VariablesTest();

  VariablesManager & Variables() { return static_cast<VariablesManager &>(Manager()); }
  /// Must succeed.
  OutputVariable * Create(AString const & name, AString const & expression, KelvroCommand * command = nullptr);
  /// What the user was told since the last look.
  std::vector<std::pair<long, AString>> Told();
  /// Names of what a report may use.
  std::vector<AString> Offered(ISimDataExtractor * extractor, SimValueContext const * context,
                               OutputVariable * edited = nullptr);
  static std::vector<AString> NamesOf(std::vector<OutputVariable *> const & variables);

  using Messages = std::vector<std::pair<long, AString>>;

  Variable m_w{L"w", L"2mm"};
  Variable m_h{L"h", L"1mm"};
  BaseSimulationSetup * m_setup = nullptr;
  TestSolution * m_solution = nullptr;
  VariablesExtractor * m_extractor = nullptr; ///< the solution's
  SimValueContext m_context;
};

} // namespace support
