#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "tests/solutionmanager/outputvariables/VariablesFixture.h"

#include <fstream>

namespace {

class OutputVariablesOfDesignFile : public support::VariablesTest {
protected:
  io::CBlock Written(bool isComplete = true) {
    io::CBlock design(L"Design");
    EXPECT_EQ(Manager().DesignFileWrite(design), isComplete);
    return design;
  }
  /// Reads variables, each item a line.
  io::ReadError ReadText(AString const & items) {
    io::CBlock variables(BaseSolutionManager::kOutputVariableBlockName);
    EXPECT_TRUE(variables.Unpack(L"OutputVariables {\n" + items + L"\n}"));
    io::CBlock design(L"Design");
    design << variables;
    return Manager().DesignFileRead(design);
  }
  std::vector<AString> Names() {
    std::vector<OutputVariable *> list;
    Manager().GetOutputVariables(list);
    return NamesOf(list);
  }
  void DeleteAll() {
    std::vector<OutputVariable *> list;
    Manager().GetOutputVariables(list);
    for (OutputVariable * const variable : list)
      Manager().DeleteOutputVariable(variable, nullptr);
  }
};

} // namespace

TEST_F(OutputVariablesOfDesignFile, AreOneFunctionEachInTheOrderOfNames) {
  Create(L"b", L"dB(S21)");
  Create(L"A", L"2*w");
  io::CBlock const design = Written();
  io::CBlock const * const variables = design.FindBlock(L"OutputVariables");
  ASSERT_TRUE(variables);
  ASSERT_EQ(variables->Size(), 2);
  EXPECT_EQ((*variables->begin())->Name(), L"A");
  EXPECT_TRUE((*variables->begin())->IsFunc());
  EXPECT_EQ(design.begin()->Item(), variables) << "before the setups";
}

TEST_F(OutputVariablesOfDesignFile, AreNoBlockWhenThereAreNone) {
  EXPECT_FALSE(Written().FindBlock(L"OutputVariables"));
}

TEST_F(OutputVariablesOfDesignFile, ComeBackWithTextAndState) {
  Create(L"Gain", L"dB(S21)");
  Create(L"Sum", L"S11 + Gain");
  Create(L"Wide", L"2*w");
  io::CBlock const design = Written();
  DeleteAll();
  EXPECT_EQ(Manager().DesignFileRead(design), io::kNoError);
  EXPECT_EQ(Names(), (std::vector<AString>{L"Gain", L"Sum", L"Wide"}));
  OutputVariable const & sum = *Manager().FindOutputVariable(L"Sum");
  EXPECT_EQ(sum.GetValueBaseText(), L"S11 + Gain");
  EXPECT_EQ(sum.GetParameterType(), val::kComplex);
  EXPECT_EQ(Manager().FindOutputVariable(L"Wide")->GetUnits(), m_w.GetUnits());
  EXPECT_EQ(Written().Pack(), design.Pack());
}

TEST_F(OutputVariablesOfDesignFile, TheExampleOfTheFormatsPageReadsAndIsWhatIsWritten) {
  std::ifstream page(SOURCE_FOLDER "/docs/formats/output-variables.md");
  std::string example;
  for (std::string line; std::getline(page, line);)
    if (line.starts_with("    "))
      example += line + "\n";
  io::CBlock variables(BaseSolutionManager::kOutputVariableBlockName);
  ASSERT_TRUE(variables.Unpack(text::FromUtf8(example)));
  io::CBlock design(L"Design");
  design << variables;
  EXPECT_EQ(Manager().DesignFileRead(design), io::kNoError);
  EXPECT_EQ(Written().FindBlock(L"OutputVariables")->Pack(), variables.Pack());
  DeleteAll();
  Create(L"Gain", L"dB(S21)");
  Create(L"Sum", L"S11 + S21");
  Create(L"Wide", L"2*w");
  EXPECT_EQ(Written().FindBlock(L"OutputVariables")->Pack(), variables.Pack());
}

TEST_F(OutputVariablesOfDesignFile, AVariableWithNothingToWriteIsLeftOutAndTheWriteSaysSo) {
  Create(L"Gain", L"1");
  Create(L"Empty", L"1")->SetValueBaseText(L"", ValueState());
  io::CBlock const design = Written(false);
  EXPECT_EQ(design.FindBlock(L"OutputVariables")->Size(), 1);
}

TEST_F(OutputVariablesOfDesignFile, AnItemThatIsNoFunctionIsToldAndLeftOut) {
  EXPECT_EQ(ReadText(L"Gain(\"dB(S21)\")\nLoss = 3\nMatch(\"dB(S11)\")"), io::kWarning);
  EXPECT_EQ(Names(), (std::vector<AString>{L"Gain", L"Match"}));
  EXPECT_EQ(Told(), (Messages{{24528, L"Loss"}}));
}

TEST_F(OutputVariablesOfDesignFile, ABadNameIsToldAndSkippedWithoutAnError) {
  EXPECT_EQ(ReadText(L"S21(\"1\")\n\"%s <b>\"(\"1\")\nGain(\"1\")"), io::kNoError);
  EXPECT_EQ(Names(), std::vector<AString>{L"Gain"});
  EXPECT_EQ(Told(), (Messages{{24557, L"S21"}, {24679, L"S21"}, {24575, L"%s <b>"}, {24679, L"%s <b>"}}));
}

TEST_F(OutputVariablesOfDesignFile, AFunctionThatCantBeReadIsAnErrorAndLeftOut) {
  EXPECT_EQ(ReadText(L"Gain()\nLoss(3)\nMatch(\"dB(S11)\", 1)\nLast(\"1\")"), io::kWarning);
  EXPECT_EQ(Names(), std::vector<AString>{L"Last"});
}

TEST_F(OutputVariablesOfDesignFile, ANameThatIsThereAlreadyDoesNotStopLoadingAndTheLaterOneCounts) {
  Create(L"Gain", L"1");
  EXPECT_EQ(ReadText(L"GAIN(\"2\")\ngain(\"3\")"), io::kNoError);
  EXPECT_EQ(Names(), std::vector<AString>{L"gain"});
  EXPECT_EQ(Manager().FindOutputVariable(L"Gain")->GetValueBaseText(), L"3");
  EXPECT_TRUE(Told().empty());
}

TEST_F(OutputVariablesOfDesignFile, WithoutAStateAreGivenThatOfTheirTextsInTheOrderOfTheirReferences) {
  EXPECT_EQ(ReadText(L"a(\"b + 1\")\nb(\"c\")\nc(\"dB(S21)\")\nbad(\"foo\")\ncircle(\"circle\")"), io::kNoError);
  for (wchar_t const * const name : {L"a", L"b", L"c"})
    EXPECT_EQ(Manager().FindOutputVariable(name)->GetParameterType(), val::kReal)
        << testing::PrintToString(AString(name));
  EXPECT_EQ(Manager().FindOutputVariable(L"bad")->GetParameterType(), val::kNotAQuantity);
  EXPECT_EQ(Manager().FindOutputVariable(L"circle")->GetParameterType(), val::kNotAQuantity);
  EXPECT_TRUE(Told().empty()) << "nobody asked";
}

TEST_F(OutputVariablesOfDesignFile, TextsOfAllKindsSurvive) {
  for (wchar_t const * const text : {L"'it''s'", L"\"quoted\" %s <b>", L"ä + Ω", L"1;2\n3", L"{}()[]"}) {
    Create(L"Gain", L"1")->SetValueBaseText(text, ValueState());
    io::CBlock design(L"Design");
    EXPECT_TRUE(design.Unpack(Written().Pack()));
    DeleteAll();
    EXPECT_EQ(Manager().DesignFileRead(design), io::kNoError);
    EXPECT_EQ(Manager().FindOutputVariable(L"Gain")->GetValueBaseText(), text);
  }
}

TEST_F(OutputVariablesOfDesignFile, AreReportedWhenTheyAreWrittenUnderTheReporterRewrite) {
  Create(L"Gain", L"1");
  m_desktop.rewrite = true;
  support::AssertWatch::Expect("!\"How does this have old output variables?!\"");
  EXPECT_TRUE(Written().FindBlock(L"OutputVariables"));
}
