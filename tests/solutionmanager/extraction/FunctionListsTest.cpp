// Which functions reports offer for a quantity.

#include "basekit/value/Value.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "viewkit/report/ReportFunctions.h"

#include <algorithm>

namespace {

using Names = std::vector<AString>;

ValueState StateOf(val::ParameterType type) { return {Units::kNoUnits, Units::kNoUnitType, 1, type}; }

Names Conversions(val::ParameterType argument, val::ParameterType result) {
  Names names;
  Value::GetConversionFunctionNames(names, StateOf(argument), result);
  return names;
}

Names operator+(Names names, Names const & others) {
  names.insert(names.end(), others.begin(), others.end());
  return names;
}

class FunctionListsTest : public support::ModelTest {
protected:
  Names Offered(int displayType, val::ParameterType type) {
    Names names;
    int const count = m_extractor.GetFunctionNames(names, StateOf(type), 1, static_cast<rep::DisplayType>(displayType));
    EXPECT_EQ(count, static_cast<int>(names.size()));
    return names;
  }

  Names const m_none = {rep::GetFunctionName(0)};
  BaseSimDataExtractor m_extractor{&Manager(), nullptr};
};

/// Of the quantity, then of a column of it.
Names OfReal(val::ParameterType result) {
  return Conversions(val::kReal, result) + Conversions(val::kRealArray, result);
}
Names OfComplex(val::ParameterType result) {
  return Conversions(val::kComplex, result) + Conversions(val::kComplexArray, result);
}

} // namespace

TEST_F(FunctionListsTest, ConversionsOfAQuantityAndOfAColumnOfItAreOffered) {
  Names names;
  int const count = m_extractor.GetConversionFunctionNames(StateOf(val::kReal), val::kReal, names);
  EXPECT_EQ(count, static_cast<int>(names.size()));
  EXPECT_EQ(names, OfReal(val::kReal));
  EXPECT_FALSE(Conversions(val::kReal, val::kReal).empty());
  EXPECT_FALSE(Conversions(val::kRealArray, val::kReal).empty());
  names.clear();
  m_extractor.GetConversionFunctionNames(StateOf(val::kComplex), val::kReal, names);
  EXPECT_EQ(names, OfComplex(val::kReal));
}

TEST_F(FunctionListsTest, WhatIsNeitherRealNorComplexIsAskedForOnce) {
  Names names;
  EXPECT_EQ(m_extractor.GetConversionFunctionNames(StateOf(val::kText), val::kReal, names),
            static_cast<int>(Conversions(val::kText, val::kReal).size()));
}

TEST_F(FunctionListsTest, AShownComplexNumberAsksForItselfAndForComplexColumns) {
  Names names;
  m_extractor.GetConversionFunctionNames(StateOf(val::kDecibelDegrees), val::kReal, names);
  EXPECT_EQ(names, Conversions(val::kDecibelDegrees, val::kReal) + Conversions(val::kComplexArray, val::kReal));
}

TEST_F(FunctionListsTest, XYPlotsOfferNoFunctionForRealQuantitiesAlone) {
  for (int const displayType : {3, 6, 7, 10, 12, 13, 14, 15}) {
    EXPECT_EQ(Offered(displayType, val::kReal), m_none + OfReal(val::kReal)) << displayType;
    EXPECT_EQ(Offered(displayType, val::kComplex), OfComplex(val::kReal)) << displayType;
  }
}

TEST_F(FunctionListsTest, StackedPlotsOfferNoFunctionForComplexQuantitiesToo) {
  for (int const displayType : {1, 8, 17}) {
    EXPECT_EQ(Offered(displayType, val::kReal), m_none + OfReal(val::kReal)) << displayType;
    EXPECT_EQ(Offered(displayType, val::kComplex), m_none + OfComplex(val::kReal)) << displayType;
    EXPECT_EQ(Offered(displayType, val::kText), Conversions(val::kText, val::kReal)) << displayType;
  }
}

TEST_F(FunctionListsTest, PolarPlotsOfferWhatGivesComplexNumbers) {
  for (int const displayType : {2, 5, 9, 11}) {
    EXPECT_EQ(Offered(displayType, val::kComplex),
              m_none + OfComplex(val::kComplex) + OfComplex(val::kMagnitudeRadians) +
                  OfComplex(val::kMagnitudeDegrees) + OfComplex(val::kDecibelDegrees))
        << displayType;
    Names const ofReal = Offered(displayType, val::kReal);
    EXPECT_EQ(std::count(ofReal.begin(), ofReal.end(), m_none.front()), 0) << displayType;
  }
}

TEST_F(FunctionListsTest, TablesOfferAll) {
  EXPECT_EQ(Offered(4, val::kReal), m_none + OfReal(val::kReal) + OfReal(val::kComplex) +
                                        OfReal(val::kMagnitudeRadians) + OfReal(val::kMagnitudeDegrees) +
                                        OfReal(val::kDecibelDegrees));
  EXPECT_EQ(Offered(4, val::kText).front(), m_none.front());
}

TEST_F(FunctionListsTest, PolarPlotsOfferNoFunctionFirstForTextsAndNotForRealNumbers) {
  EXPECT_EQ(Offered(2, val::kText).front(), m_none.front());
  EXPECT_EQ(Offered(2, val::kReal), OfReal(val::kComplex) + OfReal(val::kMagnitudeRadians) +
                                        OfReal(val::kMagnitudeDegrees) + OfReal(val::kDecibelDegrees));
}

TEST_F(FunctionListsTest, IntegersAreAskedForAsWhatTheyAreBesideTheirColumn) {
  val::ParameterType const basic = postp::GetBasicParamType(val::kInteger);
  Names const columns = basic == val::kReal      ? Conversions(val::kRealArray, val::kReal)
                        : basic == val::kComplex ? Conversions(val::kComplexArray, val::kReal)
                                                 : Names();
  EXPECT_EQ(Offered(3, val::kInteger),
            (basic == val::kReal ? m_none : Names()) + Conversions(val::kInteger, val::kReal) + columns);
}

TEST_F(FunctionListsTest, OtherDisplaysOfferNothing) {
  for (int const displayType : {0, 16, 18, -1})
    EXPECT_TRUE(Offered(displayType, val::kReal).empty()) << displayType;
}

TEST_F(FunctionListsTest, TheReportTypeIsNotRead) {
  Names first;
  Names second;
  m_extractor.GetFunctionNames(first, StateOf(val::kReal), 1, static_cast<rep::DisplayType>(3));
  m_extractor.GetFunctionNames(second, StateOf(val::kReal), 0xFFFFFFFF, static_cast<rep::DisplayType>(3));
  EXPECT_EQ(first, second);
}
