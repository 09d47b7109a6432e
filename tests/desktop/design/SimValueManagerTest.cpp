#include "desktop/design/SimValueManager.h"

#include "basekit/value/Variable.h"
#include "plotkit/simvalue/ReferencesSimValuesMessage.h"
#include "plotkit/simvalue/SimValue.h"

#include <gtest/gtest.h>

namespace {

ValueState StateOf(val::ParameterType type, Units::FullUnitType units = Units::kNoUnits) {
  return {units, Units::GetUnitType(units), 1, type};
}

class SimValueManagerTest : public testing::Test {
protected:
  ValueBase * Ask(ValueBase const & first, ValueBase const & second, long solutionID = 4) {
    return m_manager.GetDynamicDatasetValue(solutionID, SimValueContext(), &first, &second);
  }

  Variable m_x{L"x", L"1"};
  Units::FullUnitType const m_hertz = Units::GetDefaultUnits(Units::kFrequency);
  SimValue m_real{L"P", SimValueContext(), StateOf(val::kReal, m_hertz)};
  SimValue m_complex{L"C", SimValueContext(), StateOf(val::kComplex)};
  SimValue m_text{L"T", SimValueContext(), StateOf(val::kText)};
  desktop::SimValueManager m_manager;
};

} // namespace

TEST_F(SimValueManagerTest, ADatasetIsAColumnOfItsSecondValue) {
  EXPECT_EQ(Ask(m_x, m_real)->GetValueState(), StateOf(val::kRealArray, m_hertz));
  EXPECT_EQ(Ask(m_x, m_complex)->GetValueState(), StateOf(val::kComplexArray));
}

TEST_F(SimValueManagerTest, EqualQuestionsHaveTheSameAnswer) {
  ValueBase const * const dataset = Ask(m_x, m_real);
  EXPECT_EQ(Ask(m_x, m_real), dataset);
  EXPECT_NE(Ask(m_real, m_x), dataset);
  EXPECT_NE(Ask(m_x, m_real, 5), dataset);
  SimValueContext other;
  other.SetCalculationType(static_cast<rep::CalculationType>(2));
  EXPECT_NE(m_manager.GetDynamicDatasetValue(4, other, &m_x, &m_real), dataset);
}

TEST_F(SimValueManagerTest, ValuesThatAreNoNumbersMakeNone) {
  EXPECT_EQ(Ask(m_complex, m_real), nullptr) << "a dataset runs over real numbers";
  EXPECT_EQ(Ask(m_x, m_text), nullptr);
  EXPECT_EQ(m_manager.GetDynamicDatasetValue(4, SimValueContext(), nullptr, &m_x), nullptr);
  EXPECT_EQ(m_manager.GetDynamicDatasetValueForValidation(StateOf(val::kText), StateOf(val::kReal)), nullptr);
  EXPECT_EQ(m_manager.GetDatasetCount(4), 0u);
}

TEST_F(SimValueManagerTest, ADatasetIsAFunctionOfWhatItsValuesAre) {
  ValueBase const & dataset = *Ask(m_x, m_real);
  EXPECT_TRUE(dataset.UsesVariable(m_x));
  Variable other(L"y", L"2");
  EXPECT_FALSE(dataset.UsesVariable(other));
  ReferencesSimValuesMessage message(nullptr, nullptr, false);
  EXPECT_TRUE(dataset.ReceiveMsg(message));
  EXPECT_EQ(message.GetSimValues(), std::vector<SimValue *>{&m_real});
}

TEST_F(SimValueManagerTest, AReleaseTakesWhatNothingRefersToOrAll) {
  ValueReference const reference(Ask(m_x, m_real));
  Ask(m_x, m_complex);
  Ask(m_x, m_real, 5);
  m_manager.ReleaseSimValues(4, false);
  EXPECT_EQ(m_manager.GetDatasetCount(4), 1u);
  EXPECT_NE(reference.Get(), nullptr);
  m_manager.ReleaseSimValues(4, true);
  EXPECT_EQ(reference.Get(), nullptr);
  EXPECT_EQ(m_manager.GetDatasetCount(5), 1u) << "another solution's";
  m_manager.ReleaseSimValues(6, true);
}

TEST_F(SimValueManagerTest, AValueThatWentTakesNoOnesPlaceInADataset) {
  auto gone = std::make_unique<SimValue>(L"Q", SimValueContext(), StateOf(val::kReal));
  auto const & dataset = dynamic_cast<DatasetValue const &>(*Ask(m_x, *gone));
  gone.reset();
  EXPECT_EQ(dataset.GetSecond(), nullptr);
  EXPECT_EQ(dataset.GetFirst(), &m_x);
}

TEST_F(SimValueManagerTest, ACheckHasOneDatasetForEachState) {
  ValueBase const * const real =
      m_manager.GetDynamicDatasetValueForValidation(StateOf(val::kReal), StateOf(val::kReal));
  EXPECT_EQ(real->GetParameterType(), val::kRealArray);
  EXPECT_EQ(m_manager.GetDynamicDatasetValueForValidation(StateOf(val::kRealArray), StateOf(val::kReal)), real);
  EXPECT_NE(m_manager.GetDynamicDatasetValueForValidation(StateOf(val::kReal), StateOf(val::kComplex)), real);
}
