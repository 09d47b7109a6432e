#include "tests/solutionmanager/extraction/UpdateFixture.h"

using Numbers = std::vector<double>;
using Texts = std::vector<AString>;

namespace {

/// Data without columns: the value of S is asked for where the variables stand.
class SteppingExtractor : public BaseSimDataExtractor {
public:
  SteppingExtractor(BaseSolutionManager * manager, BaseSolution * solution, Variable const & x)
      : BaseSimDataExtractor(manager, solution), m_x(x) {}
  using BaseSimDataExtractor::CreateSimValue;

  bool HasExtractorOption(int option) const override { return option == 4; }
  ValueState GetQuantityType(AString const & text, int) const override {
    return {Units::kNoUnits, Units::kNoUnitType, 1, text == L"S" ? val::kReal : val::kNotAQuantity};
  }
  SimValue * CreateSimValue(AString const & text, SimValueContext const & context) override {
    return text == L"S" ? new SimValue(text, context, GetQuantityType(text, 0)) : nullptr;
  }
  double GetValue(ValueBase const &) override {
    ++asked;
    EXPECT_TRUE(PostprocessingUpdateIsInProgress());
    return 10.0 * m_x.GetValue().GetSIValue() + Value::GetIntrinsicVariable(L"F")->GetValue().GetSIValue();
  }

  int asked = 0;

private:
  Variable const & m_x;
};

class PointByPointTest : public support::UpdateTest {
protected:
  PointByPointTest() {
    m_solution->SetExtractor(m_stepping = new SteppingExtractor(m_manager.get(), m_solution, m_x));
    AddStepped(m_x, {1, 2});
    AddStepped(*Value::GetIntrinsicVariable(L"F"), {3, 4, 5});
  }
  void AddStepped(Variable & variable, Numbers const & values) {
    auto * const sweep = new Sweep(val::kReal, Units::kNoUnits, &variable);
    sweep->Column().SetValues(values);
    m_stepping->AddSweep(sweep);
  }
  SolutionPointSet & AddSteppedSet(Texts const & names) {
    SubsweepVector subsweeps;
    for (AString const & name : names)
      subsweeps.push_back(m_stepping->GetSweep(name)->CreateSubsweep(true));
    SolutionPointSet * const set = m_stepping->CreateSolutionPointSet(subsweeps, nullptr, nullptr, false);
    m_updates->listed.push_back(set);
    return *set;
  }
  Trace & AddSteppedTrace(SolutionPointSet & set, wchar_t const * y) {
    std::unique_ptr<TraceComponent> const abscissa(m_stepping->CreateTraceComponent(L"F", nullptr));
    std::unique_ptr<TraceComponent> const ordinate(m_stepping->CreateTraceComponent(y, nullptr));
    return *m_stepping->CreateTrace2D(&set, abscissa.get(), ordinate.get(), false);
  }

  SteppingExtractor * m_stepping = nullptr;
};

} // namespace

TEST_F(PointByPointTest, WithoutColumnsEachPointIsAskedForOnceForAllTraces) {
  SolutionPointSet & set = AddSteppedSet({L"x", L"F"});
  Trace & first = AddSteppedTrace(set, L"S");
  Trace & second = AddSteppedTrace(set, L"2*S");
  EXPECT_TRUE(set.UpdateData());
  EXPECT_EQ(X(first), (Numbers{3, 4, 5, 3, 4, 5}));
  EXPECT_EQ(Y(first), (Numbers{13, 14, 15, 23, 24, 25}));
  EXPECT_EQ(Y(second), (Numbers{26, 28, 30, 46, 48, 50}));
  EXPECT_EQ(m_stepping->asked, 6);
  EXPECT_EQ(m_x.GetValueText(), L"1");
}

TEST_F(PointByPointTest, TheUpdateOfAllSetsReachesThemToo) {
  Trace & trace = AddSteppedTrace(AddSteppedSet({L"x", L"F"}), L"S");
  Update();
  EXPECT_EQ(Y(trace), (Numbers{13, 14, 15, 23, 24, 25}));
  EXPECT_EQ(Segments(trace), (Texts{L"x=1: 0+3", L"x=2: 3+3"}));
}

TEST_F(PointByPointTest, FunctionsOfWholeTracesWorkOnNumbersThatCameOneByOne) {
  Trace & trace = AddSteppedTrace(AddSteppedSet({L"x", L"F"}), L"max(S)-F*0");
  EXPECT_TRUE(trace.GetSolutionPointSet().UpdateData());
  EXPECT_EQ(Y(trace), (Numbers{15, 15, 15, 25, 25, 25}));
}

TEST_F(PointByPointTest, WhatTheUserChoseAloneIsAskedFor) {
  SubsweepVector subsweeps;
  subsweeps.push_back(m_stepping->GetSweep(L"x")->CreateSubsweep(true));
  auto * const chosen = new IndexedSubsweep(*m_stepping->GetSweep(L"F"), false);
  chosen->SetSelection(std::vector<unsigned>{2});
  subsweeps.push_back(chosen);
  SolutionPointSet * const set = m_stepping->CreateSolutionPointSet(subsweeps, nullptr, nullptr, false);
  Trace & trace = AddSteppedTrace(*set, L"S");
  EXPECT_TRUE(set->UpdateData());
  EXPECT_EQ(Y(trace), (Numbers{15, 25}));
  EXPECT_EQ(m_stepping->asked, 2);
}
