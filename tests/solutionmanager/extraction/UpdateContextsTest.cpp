#include "tests/solutionmanager/extraction/UpdateFixture.h"

using Numbers = std::vector<double>;

namespace {

SimValueContext ContextOf(int kind) { return SimValueContext(kind, rep::CalculationType{}, 2, 0, 1, 1, 0, 0); }

/// In context 9 each number is ten times what it is elsewhere.
class ContextExtractor : public support::ColumnExtractor {
public:
  using ColumnExtractor::ColumnExtractor;
  using ColumnExtractor::GetSimValueColumn;
  bool GetSimValueColumn(SimValue const & value, std::vector<AComplex<double>> & numbers) const override {
    bool const isThere = ColumnExtractor::GetSimValueColumn(value, numbers);
    for (AComplex<double> & number : numbers)
      number = std::complex<double>(number) * FactorOf(value);
    return isThere;
  }
  /// As S at x=1 and F=2e9.
  AComplex<double> GetComplexValue(ValueBase const & value) override {
    return std::complex<double>(1, 2) * FactorOf(dynamic_cast<SimValue const &>(value));
  }
  bool LoadSolvedData(VariableValues const & first, VariableValues const & second,
                      std::vector<unsigned> const & reportTypes,
                      std::map<unsigned, std::vector<AString>> const & quantities,
                      IProgressMonitor * monitor) override {
    contextsOfLoads.push_back(GetSimValueContext());
    return ColumnExtractor::LoadSolvedData(first, second, reportTypes, quantities, monitor);
  }
  SimValue * CreateSimValue(AString const & text, SimValueContext const & context) override {
    SimValue * const value = ColumnExtractor::CreateSimValue(text, context);
    made += value ? 1 : 0;
    return value;
  }

  int made = 0;
  std::vector<SimValueContext> contextsOfLoads;

private:
  static double FactorOf(SimValue const & value) { return value.GetSimValueContext().GetKind() == 9 ? 10.0 : 1.0; }
};

/// Evaluated point by point.
class OwnTrace : public Trace2D {
public:
  using Trace2D::Trace2D;
};

/// x is swept though it is defined by a text.
class UpdateContextsTest : public support::UpdateTest {
protected:
  UpdateContextsTest() {
    m_solution->SetExtractor(m_contexts = new ContextExtractor(m_manager.get(), m_solution));
    m_extractor = m_contexts;
    AddSweep(*Value::GetIntrinsicVariable(L"F"), {2e9});
    AddSweep(m_x, {1, 2, 3});
    for (wchar_t const * const variation : {L"x=1", L"x=2", L"x=3"})
      AddSolved(variation, {2e9});
    m_x.SetValue(Value::Text(L"y/2"));
    m_set = &AddSet(AllOf({L"x", L"F"}));
  }
  std::unique_ptr<TraceComponent> Component(wchar_t const * text, int kind) {
    SimValueContext const context = ContextOf(kind);
    std::unique_ptr<TraceComponent> component(m_extractor->CreateTraceComponent(text, &context));
    m_extractor->SetSimValueContext(nullptr);
    return component;
  }
  Trace & AddTraceIn(int kind) {
    std::unique_ptr<TraceComponent> const y = Component(L"re(S)*x", kind);
    return *m_extractor->CreateTrace2D(m_set, Component(L"x", 3).get(), y.get(), false);
  }

  ContextExtractor * m_contexts = nullptr;
  SolutionPointSet * m_set = nullptr;
};

} // namespace

TEST_F(UpdateContextsTest, WordsThatAreReadAnewDuringAnUpdateKeepTheirComponentsContext) {
  Trace & ofSet = AddTraceIn(3);
  Trace & other = AddTraceIn(9);
  Trace & another = AddTraceIn(3);
  int const made = m_contexts->made;
  Update();
  EXPECT_EQ(Y(ofSet), (Numbers{1, 4, 9}));
  EXPECT_EQ(Y(other), (Numbers{10, 40, 90}));
  EXPECT_EQ(Y(another), (Numbers{1, 4, 9}));
  EXPECT_EQ(m_contexts->made, made) << "no sim value of a context that nobody chose";
}

TEST_F(UpdateContextsTest, WhatTheCacheServesIsOfTheComponentsContextToo) {
  Trace & trace = AddTraceIn(9);
  Update();
  int const loads = m_extractor->loads;
  m_extractor->data.clear();
  trace.MarkItDirty(true);
  Update();
  EXPECT_EQ(m_extractor->loads, loads);
  EXPECT_EQ(Y(trace), (Numbers{10, 40, 90}));
}

TEST_F(UpdateContextsTest, ASinglePointSetKeepsThemAsWellAndLoadsInItsOwn) {
  Trace & first = AddTraceIn(9);
  Trace & second = AddTraceIn(3);
  m_x.SetValue(Value::Text(L"y/4")); // so that the components are bound anew
  EXPECT_TRUE(m_set->UpdateData());
  EXPECT_EQ(Y(first), (Numbers{10, 40, 90}));
  EXPECT_EQ(Y(second), (Numbers{1, 4, 9}));
  EXPECT_EQ(m_contexts->contextsOfLoads, std::vector<SimValueContext>(3, m_set->GetSimValueContext()));
}

TEST_F(UpdateContextsTest, TracesOfClassesOfTheirOwnKeepThemPointByPoint) {
  auto * const trace = new OwnTrace(*m_set, Component(L"x", 3).release(), Component(L"re(S)*x", 9).release());
  m_set->AddTraceToList(trace);
  Update();
  EXPECT_EQ(Y(*trace), (Numbers{10, 20, 30})) << "ten times x";
}

TEST_F(UpdateContextsTest, AfterAnUpdateTextsAreReadInTheContextOfBefore) {
  AddTraceIn(9);
  SimValueContext const before = ContextOf(5);
  m_extractor->SetSimValueContext(&before);
  Update();
  EXPECT_EQ(m_extractor->GetSimValueContext(), before) << "of all sets";
  m_extractor->Update(true, nullptr);
  EXPECT_EQ(m_extractor->GetSimValueContext(), before) << "of the extractor's sets";
  EXPECT_TRUE(m_extractor->ReloadSolutionPointSetData(m_solution->GetVersionID(), L"x=2"));
  EXPECT_EQ(m_extractor->GetSimValueContext(), before) << "of the sets on a variation";
}
