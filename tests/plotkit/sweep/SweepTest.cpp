#include "plotkit/sweep/Sweep.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableNameSpace.h"
#include "plotkit/sweep/PostprocessSweep.h"
#include "plotkit/sweep/SubsweepDefParams.h"
#include "plotkit/sweep/SynchronizedSweep.h"

#include <gtest/gtest.h>
#include <random>

namespace {

/// The variables x, y and n, known to the current name space.
class SweepTest : public testing::Test {
protected:
  SweepTest() {
    for (Variable * const variable : {&m_x, &m_y})
      m_names.AddVariable(variable);
  }
  static SweepColumn Column(Variable & variable, std::vector<double> const & values) {
    SweepColumn column(val::kReal, variable.GetUnits(), &variable);
    column.SetValues(values);
    return column;
  }
  /// Through the text form, as a design file does.
  static io::CBlock Written(SweepBase const & sweep) {
    io::CBlock block(sweep.GetItemName());
    EXPECT_TRUE(sweep.Write(block));
    io::CBlock read(sweep.GetItemName());
    EXPECT_TRUE(read.Unpack(block.Pack()));
    return read;
  }
  static std::vector<AString> TextsOf(SweepBase const & sweep) {
    std::vector<AString> texts;
    sweep.GetValuesText(texts, nullptr);
    return texts;
  }

  VariableNameSpace m_names{false, false};
  Variable m_x{L"x", L"1pF"};
  Variable m_y{L"y", L"5"};
};

} // namespace

TEST_F(SweepTest, ValuesAreInSIUnitsAndTheirTextsInThoseOfTheVariable) {
  Sweep sweep(val::kReal, m_x.GetUnits(), &m_x);
  sweep.Column().SetValues(std::vector<double>{1e-12, 2.5e-12});
  EXPECT_EQ(TextsOf(sweep), (std::vector<AString>{L"1pF", L"2.5pF"}));
  EXPECT_EQ(sweep.GetValuesText(L';', nullptr), L"1pF;2.5pF");
  std::vector<unsigned> const places{1, 7};
  EXPECT_EQ(sweep.GetValuesText(L';', &places), L"2.5pF");
  EXPECT_EQ(sweep.GetRepSingleValueText(1), L"2.5pF");
  EXPECT_EQ(sweep.GetSingleValueText(2), L"");
}

TEST_F(SweepTest, IsKnownByItsNameWithoutCase) {
  Sweep const sweep(val::kReal, Units::kNoUnits, &m_x);
  EXPECT_TRUE(sweep == AString(L"X"));
  EXPECT_FALSE(sweep == AString(L"xx"));
  EXPECT_EQ(sweep.GetRepVarName(), L"x");
}

TEST_F(SweepTest, EveryKindTellsWhichItIs) {
  Sweep plain;
  SynchronizedSweep synchronized;
  PostprocessSweep postprocess;
  EXPECT_EQ(plain.GetSweep(), &plain);
  EXPECT_EQ(plain.GetSynchronizedSweep(), nullptr);
  EXPECT_EQ(synchronized.GetSynchronizedSweep(), &synchronized);
  EXPECT_EQ(synchronized.GetSweep(), nullptr);
  EXPECT_EQ(postprocess.GetPostprocessSweep(), &postprocess);
  EXPECT_EQ(postprocess.GetSweep(), nullptr);
}

TEST_F(SweepTest, GivesItsVariableTheValueOfAPlace) {
  Sweep sweep(val::kReal, m_x.GetUnits(), &m_x);
  sweep.Column().SetValues(std::vector<double>{1e-12, 2.5e-12});
  EXPECT_TRUE(sweep.SetSweepValue(1));
  EXPECT_EQ(m_x.GetValue().GetSIValue(), 2.5e-12);
  EXPECT_EQ(m_x.GetValueText(), L"2.5pF");
  EXPECT_FALSE(sweep.SetSweepValue(2));
  EXPECT_TRUE(sweep.InitVariable());
  EXPECT_EQ(m_x.GetValue().GetSIValue(), 1e-12);
}

TEST_F(SweepTest, WithoutAVariableOrValuesThereIsNothingToSet) {
  Sweep sweep(val::kComplex, Units::kNoUnits, nullptr);
  EXPECT_EQ(sweep.GetName(), L"");
  EXPECT_FALSE(sweep.InitVariable());
  EXPECT_EQ(sweep.GetVariable(0), nullptr);
  EXPECT_EQ(sweep.GetParameterType(0), val::kComplex);
  unsigned count = 5;
  EXPECT_FALSE(sweep.UpdateValues(count));
  EXPECT_EQ(count, 0u);
  io::CBlock block(Sweep::kSweepKeyword);
  EXPECT_FALSE(sweep.Write(block)) << "there is no name to find it by";
  EXPECT_TRUE(block.Empty());
}

TEST_F(SweepTest, TakesOverTheUnitsOfItsVariableAndKeepsItsValues) {
  Sweep sweep(val::kReal, m_x.GetUnits(), &m_x);
  sweep.Column().SetValues(std::vector<double>{2e-12});
  m_x.SetValue(Value::Real(1e-9, Value::Real(0, m_x.GetUnits()).GetUnits()));
  Variable nano(L"t", L"1nF");
  m_x.SetValue(nano.GetValue());
  sweep.SynchronizeWithVariable();
  EXPECT_EQ(sweep.GetUnits(0), nano.GetUnits());
  EXPECT_EQ(sweep.GetSingleValueText(0), L"0.002nF");
}

TEST_F(SweepTest, ASpecialSweepIsNotSaved) {
  Sweep sweep(val::kReal, Units::kNoUnits, &m_x);
  sweep.SetIsSpecialSweep(true);
  io::CBlock block(Sweep::kSweepKeyword);
  EXPECT_FALSE(sweep.Write(block));
  EXPECT_TRUE(block.Empty());
}

TEST_F(SweepTest, AnySweepReadsBackWhatItWrote) {
  std::mt19937_64 random(7);
  for (int round = 0; round < 50; ++round) {
    std::vector<double> values(random() % 20);
    for (double & value : values)
      value = std::uniform_real_distribution<double>(-1e12, 1e12)(random) * 1e-20;
    Sweep sweep(val::kReal, m_x.GetUnits(), &m_x);
    sweep.Column().SetValues(values);
    Sweep read;
    ASSERT_EQ(read.Read(Written(sweep), nullptr), io::kNoError);
    ASSERT_EQ(read.GetCount(), values.size());
    for (unsigned place = 0; place < read.GetCount(); ++place)
      EXPECT_EQ(read.Column().ComplexAt(place).real(), values[place]) << "bit for bit";
    EXPECT_EQ(read.GetVariable(0), &m_x);
    EXPECT_EQ(read.GetUnits(0), m_x.GetUnits());
    EXPECT_EQ(Written(read).Pack(), Written(sweep).Pack());
  }
}

TEST_F(SweepTest, ComplexNumbersWholeNumbersAndTextsComeBackAsSuch) {
  Sweep complexes(val::kComplex, Units::kNoUnits, &m_x);
  complexes.Column().SetValues(std::vector<AComplex<double>>{{1, 2}, {3, -4}});
  Sweep texts(val::kText, Units::kNoUnits, &m_x);
  texts.Column().SetValues(std::vector<AString>{L"FR 4", L"\"\u00e9\""});
  Sweep wholes(val::kInteger, Units::kNoUnits, &m_x);
  wholes.Column().SetValues(std::vector<double>{1, 3});
  for (Sweep const * const sweep : {&complexes, &texts, &wholes}) {
    Sweep read;
    ASSERT_EQ(read.Read(Written(*sweep), nullptr), io::kNoError);
    EXPECT_EQ(read.GetParameterType(0), sweep->GetParameterType(0));
    EXPECT_EQ(TextsOf(read), TextsOf(*sweep));
  }
  EXPECT_EQ(TextsOf(wholes), (std::vector<AString>{L"1", L"3"}));
}

TEST_F(SweepTest, ASweepOverAnUnknownVariableKeepsItsNameAndSaysSo) {
  io::CBlock block(Sweep::kSweepKeyword);
  block << io::named(L"Variable", L"gone");
  Sweep sweep;
  EXPECT_EQ(sweep.Read(block, nullptr), io::kWarning);
  EXPECT_EQ(sweep.GetName(), L"gone");
  EXPECT_EQ(sweep.GetVariable(0), nullptr);
  EXPECT_EQ(sweep.GetCount(), 0u);
}

TEST_F(SweepTest, AnIntrinsicVariableIsKnownWithoutAnybodySayingSo) {
  io::CBlock block(Sweep::kSweepKeyword);
  block << io::named(L"Variable", val::kIntrinsicFrequency);
  Sweep sweep;
  EXPECT_EQ(sweep.Read(block, nullptr), io::kNoError);
  EXPECT_EQ(sweep.GetVariable(0), Value::GetIntrinsicVariable(val::kIntrinsicFrequency));
}

TEST_F(SweepTest, ContentThatFitsNoSweepIsRefusedAndChangesNothing) {
  Sweep sweep(val::kReal, m_x.GetUnits(), &m_x);
  sweep.Column().SetValues(std::vector<double>{1, 2});
  AString const before = Written(sweep).Pack();
  wchar_t const * const refused[] = {
      L"Sweep { }",
      L"Sweep { Variable = 3 }",
      L"Sweep { Variable = \"\" }",
      L"Sweep { Variable = \"x\" Values(\"one\") }",
      L"Sweep { Variable = \"x\" Values(1, \"two\") }",
      L"Sweep { Variable = \"x\" Values [\"a\"] }",
      L"Sweep { Variable = \"x\" ParameterType = 2 Values(1, 2, 3) }",
      L"Sweep { Variable = \"x\" ParameterType = 13 Values(1.5) }",
      L"Sweep { Variable = \"x\" ParameterType = 13 Values(1e300) }",
      L"Sweep { Variable = \"x\" ParameterType = 14 Values(1) }",
      L"Sweep { Variable = \"x\" ParameterType = 77 Values(1) }",
  };
  for (wchar_t const * const text : refused) {
    io::CBlock block(Sweep::kSweepKeyword);
    ASSERT_TRUE(block.Unpack(text)) << AString(text).size();
    io::ReadError const result = sweep.Read(block, nullptr);
    EXPECT_TRUE(result == io::kNotFound || result == io::kBadContent) << result;
    EXPECT_EQ(Written(sweep).Pack(), before);
  }
}

TEST_F(SweepTest, AUnitThatIsNoneIsDroppedWithAWarning) {
  io::CBlock block(Sweep::kSweepKeyword);
  block << io::named(L"Variable", L"x") << io::named(L"Units", 123456);
  Sweep sweep;
  EXPECT_EQ(sweep.Read(block, nullptr), io::kWarning);
  EXPECT_EQ(sweep.GetUnits(0), Units::kNoUnits);
}

TEST_F(SweepTest, SynchronizedVariablesRunTogetherUnderTheNameOfTheFirst) {
  SynchronizedSweep sweep;
  EXPECT_TRUE(sweep.AddColumn(Column(m_x, {1e-12, 2e-12})));
  EXPECT_TRUE(sweep.AddColumn(Column(m_y, {10, 20})));
  EXPECT_FALSE(sweep.AddColumn(Column(m_y, {10})));
  EXPECT_EQ(sweep.GetName(), L"x");
  EXPECT_EQ(sweep.GetRepVarName(), L"x, y");
  EXPECT_EQ(sweep.GetSweepCount(), 2u);
  EXPECT_EQ(sweep.GetCount(), 2u);
  EXPECT_EQ(sweep.GetVariable(1), &m_y);
  EXPECT_EQ(sweep.GetVariable(2), nullptr);
  EXPECT_EQ(sweep.GetUnits(0), m_x.GetUnits());
  EXPECT_EQ(sweep.GetSingleValueText(1), L"2pF, 20");
  EXPECT_TRUE(sweep.SetSweepValue(1));
  EXPECT_EQ(m_x.GetValue().GetSIValue(), 2e-12);
  EXPECT_EQ(m_y.GetValue().GetSIValue(), 20);
  EXPECT_FALSE(sweep.SetSweepValue(2));
  SynchronizedSweep read;
  EXPECT_EQ(read.Read(Written(sweep), nullptr), io::kNoError);
  EXPECT_EQ(Written(read).Pack(), Written(sweep).Pack());
}

TEST_F(SweepTest, SynchronizedColumnsOfUnequalLengthAreRefused) {
  io::CBlock block(SynchronizedSweep::kSynchronizedSweepKeyword);
  ASSERT_TRUE(block.Unpack(L"SynchronizedSweep { Column { Variable = \"x\" Values(1) } "
                           L"Column { Variable = \"y\" Values(1, 2) } }"));
  SynchronizedSweep sweep;
  EXPECT_EQ(sweep.Read(block, nullptr), io::kBadContent);
  EXPECT_EQ(sweep.GetSweepCount(), 0u);
  EXPECT_EQ(sweep.Read(io::CBlock(), nullptr), io::kNotFound);
  io::CBlock written(SynchronizedSweep::kSynchronizedSweepKeyword);
  EXPECT_FALSE(sweep.Write(written));
}

TEST_F(SweepTest, APostprocessSweepKeepsItsRangeAndNotItsValues) {
  PostprocessSweep sweep(&m_x, m_x.GetUnits());
  sweep.SetMinMaxIncr(1e-12, 2e-12, 0.5e-12);
  EXPECT_EQ(sweep.GetMin(), 1e-12);
  EXPECT_EQ(sweep.GetMax(), 2e-12);
  EXPECT_EQ(sweep.GetIncrement(), 0.5e-12);
  EXPECT_EQ(TextsOf(sweep), (std::vector<AString>{L"1pF", L"1.5pF", L"2pF"}));
  EXPECT_TRUE(sweep.SetSweepValue(1));
  EXPECT_EQ(m_x.GetValue().GetSIValue(), 1.5e-12);
  PostprocessSweep read;
  EXPECT_EQ(read.Read(Written(sweep), nullptr), io::kNoError);
  EXPECT_EQ(Written(read).Pack(), Written(sweep).Pack());
  EXPECT_EQ(read.GetUnits(0), m_x.GetUnits());
}

TEST_F(SweepTest, ARangeOfABillionNumbersInAFileTakesNoMemoryAndHasNone) {
  io::CBlock block(PostprocessSweep::kPostprocessSweepKeyword);
  ASSERT_TRUE(block.Unpack(L"PostprocessSweep { Variable = \"x\" Min = 0 Max = 1e9 Increment = 1 }"));
  PostprocessSweep sweep;
  EXPECT_EQ(sweep.Read(block, nullptr), io::kNoError);
  EXPECT_EQ(sweep.GetCount(), 0u);
  EXPECT_TRUE(TextsOf(sweep).empty());
}

TEST_F(SweepTest, APostprocessSweepWithoutARangeIsRefused) {
  io::CBlock block(PostprocessSweep::kPostprocessSweepKeyword);
  ASSERT_TRUE(block.Unpack(L"PostprocessSweep { Variable = \"x\" Min = 0 Max = \"1\" Increment = 1 }"));
  PostprocessSweep sweep;
  EXPECT_EQ(sweep.Read(block, nullptr), io::kBadContent);
  EXPECT_EQ(sweep.Read(io::CBlock(), nullptr), io::kNotFound);
  EXPECT_EQ(sweep.GetName(), L"");
}
