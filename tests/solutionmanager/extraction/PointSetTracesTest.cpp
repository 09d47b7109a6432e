#include "plotkit/simvalue/PostprocessMsg.h"
#include "plotkit/trace/ExtendedTraceInfo.h"
#include "tests/solutionmanager/extraction/TraceFixture.h"

using support::AssertWatch;

namespace {

class PointSetTracesTest : public support::TraceTest {
protected:
  io::CBlock Written() {
    io::CBlock block(BaseSolution::kSimDataExtractorBlockName);
    EXPECT_TRUE(m_extractor->DesignFileWrite(block));
    return block;
  }
  /// Another extractor, filled from the block's text.
  std::unique_ptr<support::TraceExtractor> Read(AString const & text, io::ReadError expected = io::kNoError) {
    io::CBlock block(BaseSolution::kSimDataExtractorBlockName);
    EXPECT_TRUE(block.Unpack(text));
    auto extractor = std::make_unique<support::TraceExtractor>(&Manager(), m_solution);
    EXPECT_EQ(extractor->DesignFileRead(block), expected);
    return extractor;
  }
  static SolutionPointSet * FirstSet(support::TraceExtractor & extractor) {
    return extractor.GetSolutionPointSetsSize() > 0 ? *extractor.GetFirstSolutionPointSet() : nullptr;
  }
  static std::vector<Trace *> TracesOf(SolutionPointSet const & pointSet) {
    std::list<Trace *> traces;
    pointSet.GetAvailableTraces(traces);
    return {traces.begin(), traces.end()};
  }
  static std::vector<AString> TextsOf(TraceComponent const & component) {
    std::vector<AString> texts;
    for (std::size_t place = 0; place < component.GetValues().GetCount(); ++place)
      texts.push_back(component.GetEntryText(place));
    return texts;
  }
};

class CountingMsg : public ValueMessage {
public:
  CountingMsg() : ValueMessage(1) {}
};

} // namespace

TEST_F(PointSetTracesTest, PagesAndPlacesNameTheComponents) {
  SolutionPointSet * const set = CreateSet();
  Trace * const flat = AddTrace(set, L"x", L"S11");
  EXPECT_EQ(flat->GetTraceComponent(TabPage::kX), flat->GetAbscissa());
  EXPECT_EQ(flat->GetTraceComponent(TabPage::kComplex), flat->GetOrdinate());
  EXPECT_EQ(flat->GetTraceComponent(TabPage::kQuantity), flat->GetOrdinate());
  EXPECT_EQ(flat->GetTraceComponent(TabPage::kZ), nullptr);
  EXPECT_EQ(flat->GetTraceComponent(static_cast<TabPage>(9)), nullptr);
  EXPECT_EQ(flat->GetLastOrdinate(), flat->GetOrdinate());
  auto const clone = [flat](TraceComponent const * component) { return component->Clone(); };
  Trace3D solid(*set, clone(flat->GetAbscissa()), clone(flat->GetAbscissa()), clone(flat->GetOrdinate()));
  EXPECT_EQ(solid.GetTraceComponent(TabPage::kZ), solid.GetThird());
  EXPECT_EQ(solid.GetTraceComponent(TabPage::kQuantity), solid.GetThird());
  EXPECT_EQ(solid.GetLastOrdinate(), solid.GetThird());
  std::vector<TraceComponent *> components;
  EXPECT_EQ(solid.GetTraceComponents(components), 3);
  EXPECT_EQ(components, (std::vector<TraceComponent *>{solid.GetAbscissa(), solid.GetOrdinate(), solid.GetThird()}));
}

TEST_F(PointSetTracesTest, AFlatTraceIsNeverEqualToOneInSpace) {
  SolutionPointSet * const set = CreateSet();
  TraceComponent const x(L"x", 0, 0, false, Units::kNoUnits);
  Trace2D const flat(*set, x.Clone(), x.Clone());
  Trace3D const solid(*set, x.Clone(), x.Clone());
  EXPECT_TRUE(flat.IsEqual(&x, &x));
  EXPECT_FALSE(flat.IsEqual(&x, nullptr));
  EXPECT_FALSE(flat.IsEqual(&x, &x, nullptr));
  EXPECT_FALSE(solid.IsEqual(&x, &x));
  EXPECT_TRUE(solid.IsEqual(&x, &x, nullptr));
}

TEST_F(PointSetTracesTest, AReplacedComponentLeavesTheTraceDirtyAndEmpty) {
  SolutionPointSet * const set = CreateSet();
  Trace * const trace = AddTrace(set, L"x", L"S11");
  set->UpdateData();
  trace->MarkItDirty(false);
  auto replacement = std::make_unique<TraceComponent>(L"2*x", 0, 0, false, Units::kNoUnits);
  EXPECT_FALSE(trace->ReplaceComponent(replacement.get(), 2)) << "there is no third one";
  EXPECT_FALSE(trace->IsDirty());
  TraceComponent * const taken = replacement.release();
  EXPECT_TRUE(trace->ReplaceComponent(taken, 1));
  EXPECT_EQ(trace->GetOrdinate(), taken);
  EXPECT_TRUE(trace->IsDirty());
  EXPECT_EQ(trace->GetValueCount(), 0u);
  EXPECT_TRUE(trace->ReplaceComponent(nullptr, 0));
  EXPECT_EQ(trace->GetAbscissa(), nullptr);
}

TEST_F(PointSetTracesTest, AnUpdateBeginsWithoutValues) {
  SolutionPointSet * const set = CreateSet();
  Trace * const trace = AddTrace(set, L"x", L"S11");
  trace->AppendNewValue();
  trace->AddSegment(0, L"x=1");
  PostprocessMsg message(*set, 3);
  trace->BeginPostprocessingUpdate(message);
  EXPECT_EQ(trace->GetValueCount(), 0u);
  EXPECT_TRUE(trace->GetSegments().empty());
  CountingMsg nobodys;
  EXPECT_FALSE(trace->SendMessageToValues(nobodys));
}

TEST_F(PointSetTracesTest, SegmentsComeIntoTheOrderOfTheirPointsWithAllValues) {
  SolutionPointSet * const set = CreateSet();
  Trace trace(*set, new TraceComponent(L"x", 0, 0, false, Units::kNoUnits),
              new TraceComponent(L"y", 0, 0, false, Units::kNoUnits));
  auto const append = [&trace](double x, double y) {
    trace.GetAbscissa()->AppendComponentValue(Value::Real(x));
    trace.GetOrdinate()->AppendComponentValue(Value::Complex({y, 1.0}));
  };
  append(3, 30);
  append(4, 40);
  trace.AddSegment(1, L"x=2");
  append(1, 10);
  trace.AddSegment(0, L"x=1");
  trace.GetAbscissa()->AppendInvalidValue();
  trace.GetOrdinate()->AppendInvalidValue();
  trace.AddSegment(2, L"x=3", true);
  trace.ArrangeSegments();
  EXPECT_EQ(TextsOf(*trace.GetAbscissa()), (std::vector<AString>{L"1", L"3", L"4", L"N/A"}));
  EXPECT_EQ(TextsOf(*trace.GetOrdinate()), (std::vector<AString>{L"10+1i", L"30+1i", L"40+1i", L"N/A"}));
  EXPECT_EQ(trace.GetSegments().Get()[1], (SampleSegments::Segment{1, L"x=2", 1, 2, false}));
  EXPECT_TRUE(trace.GetSegments().Get()[2].isMissing);
}

TEST_F(PointSetTracesTest, NamesAreUniqueInASetWithoutCase) {
  SolutionPointSet * const set = CreateSet();
  Trace * const first = AddTrace(set, L"x", L"S11");
  Trace * const second = AddTrace(set, L"x", L"S21");
  EXPECT_EQ(first->GetName(), L"Trace 1");
  EXPECT_EQ(second->GetName(), L"Trace 2");
  second->SetName(L"TRACE 3");
  EXPECT_EQ(AddTrace(set, L"x", L"y")->GetName(), L"Trace 4");
  set->SetUniqueTraceName(nullptr);
}

TEST_F(PointSetTracesTest, ATraceIsListedOnceHoweverOftenItIsAdded) {
  SolutionPointSet * const set = CreateSet();
  Trace * const trace = AddTrace(set, L"x", L"S11");
  set->AddTraceToList(trace);
  EXPECT_EQ(TracesOf(*set).size(), 1u);
  set->RemoveTrace(trace);
  EXPECT_TRUE(set->OKtoDelete());
}

TEST_F(PointSetTracesTest, TheDesignFileGivesBackTracesWithoutValues) {
  m_design.ownInstances = {&m_instance};
  SolutionPointSet * const set = CreateSet(true, &m_instance);
  Trace * const flat = AddTrace(set, L"x", L"dB(S11)");
  SimValueContext const context(9, rep::CalculationType{}, 2, 0, 1, 1, 0, 0);
  std::unique_ptr<TraceComponent> const inContext(m_extractor->CreateTraceComponent(L"S21", &context));
  Trace * const solid =
      m_extractor->CreateTrace3D(set, flat->GetAbscissa(), flat->GetOrdinate(), inContext.get(), false);
  io::CBlock info(L"Any");
  info << io::CBlock_func(L"Colour");
  solid->SetExtendedTraceInfo(new ExtendedTraceInfo(info));
  TextTraceComponent text(L"no expression");
  m_extractor->CreateTrace2D(set, flat->GetAbscissa(), &text, true);
  std::unique_ptr<support::TraceExtractor> const read = Read(Written().Pack());
  SolutionPointSet * const readSet = FirstSet(*read);
  ASSERT_NE(readSet, nullptr);
  std::vector<Trace *> const traces = TracesOf(*readSet);
  ASSERT_EQ(traces.size(), 3u);
  EXPECT_TRUE(traces[0]->IsEqual(flat->GetAbscissa(), flat->GetOrdinate()));
  EXPECT_TRUE(traces[0]->GetIsShared());
  EXPECT_TRUE(traces[0]->IsDirty());
  EXPECT_EQ(traces[0]->GetName(), flat->GetName());
  EXPECT_TRUE(traces[0]->GetOrdinate()->IsBound());
  EXPECT_TRUE(traces[1]->IsEqual(flat->GetAbscissa(), flat->GetOrdinate(), inContext.get()));
  EXPECT_FALSE(traces[1]->GetIsShared());
  ASSERT_NE(traces[1]->GetExtendedTraceInfo(), nullptr);
  EXPECT_NE(traces[1]->GetExtendedTraceInfo()->GetContent().FindItem(L"Colour", io::CBlock_item::Kind::Func), nullptr);
  EXPECT_EQ(traces[2]->GetItemName(), L"TraceText");
  io::CBlock again(BaseSolution::kSimDataExtractorBlockName);
  read->DesignFileWrite(again);
  EXPECT_EQ(again.Pack(), Written().Pack());
  EXPECT_EQ(read->GetSimValueContext(), SimValueContext()) << "as before the reading";
  EXPECT_EQ(Value::GetValueParser(), nullptr);
}

TEST_F(PointSetTracesTest, WhatTracesReferToSurvivesReadingAndNothingElse) {
  AddTrace(CreateSet(), L"x", L"dB(S11)");
  std::unique_ptr<TraceComponent> const component(m_extractor->CreateTraceComponent(L"T", nullptr));
  AString const written = Written().Pack();
  EXPECT_NE(written.find(L"\"T\""), AString::npos);
  std::unique_ptr<support::TraceExtractor> const read = Read(written);
  EXPECT_EQ(read->made, 0) << "the file's own sim value serves";
  io::CBlock again(BaseSolution::kSimDataExtractorBlockName);
  read->DesignFileWrite(again);
  EXPECT_NE(again.Pack().find(L"\"S11\""), AString::npos);
  EXPECT_EQ(again.Pack().find(L"\"T\""), AString::npos);
}

TEST_F(PointSetTracesTest, ATraceThatCannotBeReadIsLeftOut) {
  SolutionPointSet * const set = CreateSet();
  AddTrace(set, L"x", L"S11");
  AddTrace(set, L"x", L"S21");
  std::wstring text = Written().Pack().c_str();
  std::size_t const place = text.find(L"Y(\"S11\"");
  ASSERT_NE(place, std::wstring::npos);
  text.replace(place, 7, L"Y(1e300");
  std::unique_ptr<support::TraceExtractor> const read = Read(AString(text));
  SolutionPointSet * const readSet = FirstSet(*read);
  ASSERT_NE(readSet, nullptr);
  ASSERT_EQ(TracesOf(*readSet).size(), 1u);
  EXPECT_EQ(TracesOf(*readSet).front()->GetOrdinate()->GetValueText(), L"S21");
}

TEST_F(PointSetTracesTest, HostileTracesAreLeftOutOrHarmless) {
  AddTrace(CreateSet(), L"x", L"S11");
  std::wstring const text = Written().Pack().c_str();
  std::size_t const begin = text.find(L"Trace2D");
  ASSERT_NE(begin, std::wstring::npos);
  for (wchar_t const * const content :
       {L"Trace2D { X(", L"Trace2D = 7", L"Trace2D(1, 2)", L"Trace3D { Z(\"T\", 0, 0, false, 90, \"a\") }",
        L"Trace2D { Name = 7 Shared = \"no\" Y(\"((((((((((((((((((((((((((\", 2147483647, 2147483647, true, "
        L"2147483647) }",
        L"TraceText { X(\"a\", 0, 0, false, 90, PlainText = 3) Z(1) }", L"Trace9D { }"}) {
    std::wstring hostile = text;
    std::size_t const end = hostile.find(L'}', begin) + 1;
    hostile.replace(begin, end - begin, content);
    io::CBlock block(BaseSolution::kSimDataExtractorBlockName);
    if (!block.Unpack(AString(hostile)))
      continue;
    support::TraceExtractor extractor(&Manager(), m_solution);
    extractor.DesignFileRead(block);
    EXPECT_LE(extractor.GetSolutionPointSetsSize(), 1u);
    io::CBlock again(BaseSolution::kSimDataExtractorBlockName);
    EXPECT_TRUE(extractor.DesignFileWrite(again));
  }
}

TEST_F(PointSetTracesTest, OfATwiceNamedComponentTheFirstCounts) {
  AddTrace(CreateSet(), L"x", L"S11");
  std::wstring text = Written().Pack().c_str();
  std::size_t const place = text.find(L"Y(\"S11\"");
  ASSERT_NE(place, std::wstring::npos);
  text.insert(place, L"Y(\"y\", 1, 0, false, 90) ");
  io::CBlock block(BaseSolution::kSimDataExtractorBlockName);
  ASSERT_TRUE(block.Unpack(AString(text)));
  support::TraceExtractor extractor(&Manager(), m_solution);
  EXPECT_EQ(extractor.DesignFileRead(block), io::kNoError);
  ASSERT_NE(FirstSet(extractor), nullptr);
  ASSERT_EQ(TracesOf(*FirstSet(extractor)).size(), 1u);
  EXPECT_EQ(TracesOf(*FirstSet(extractor)).front()->GetOrdinate()->GetValueText(), L"y");
}

TEST_F(PointSetTracesTest, TracesInUseKeepTheirSetThroughACollection) {
  SolutionPointSet * const set = CreateSet();
  Trace * const kept = AddTrace(set, L"x", L"S11");
  AddTrace(set, L"x", L"S21");
  AddTrace(CreateSet(false), L"x", L"T");
  m_extractor->DoGarbageCollection({kept});
  EXPECT_EQ(m_extractor->GetSolutionPointSetsSize(), 1u);
  EXPECT_EQ(TracesOf(*set), std::vector<Trace *>{kept});
  EXPECT_EQ(Written().Pack().find(L"\"S21\""), AString::npos) << "nothing refers to it any more";
}
