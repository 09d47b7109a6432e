#include "solutionmanager/undo/COutputVariableMapDeltaState.h"
#include "solutionmanager/undo/SolutionMapDeltaState.h"

#include "plotkit/outputvariable/OutputVariable.h"
#include "tests/support/AssertWatch.h"

#include <gtest/gtest.h>

using support::AssertWatch;

namespace {

struct Item {
  Item() { ++s_alive; }
  ~Item() { --s_alive; }
  Item(Item const &) = delete;
  void UpdatePostProcessingItems(bool hasData) {
    ++m_updates;
    m_hasData = hasData;
  }
  int m_updates = 0;
  bool m_hasData = true;
  inline static int s_alive = 0;
};

using Map = std::map<long, Item *>;
using Delta = MapDeltaState<long, Item *, std::less<long>>;

} // namespace

TEST(MapDeltaState, UndoOfAnAddMovesTheItemOutAndRedoBringsTheSamePointerBack) {
  Item item;
  Map live{{3, &item}};
  Map deleted;
  Delta delta(&live, &deleted);
  delta.Record(3, &item, true);
  delta.UndoIt();
  EXPECT_TRUE(live.empty());
  EXPECT_EQ(deleted, (Map{{3, &item}}));
  delta.RedoIt();
  EXPECT_EQ(live, (Map{{3, &item}}));
  EXPECT_TRUE(deleted.empty());
  delta.UndoIt();
  EXPECT_EQ(deleted, (Map{{3, &item}}));
}

TEST(MapDeltaState, UndoOfADeleteBringsTheItemBack) {
  Item item;
  Map live;
  Map deleted{{3, &item}};
  Delta delta(&live, &deleted);
  delta.Record(3, &item, false);
  delta.UndoIt();
  EXPECT_EQ(live, (Map{{3, &item}}));
  EXPECT_TRUE(deleted.empty());
  delta.RedoIt();
  EXPECT_TRUE(live.empty());
  EXPECT_EQ(deleted, (Map{{3, &item}}));
}

TEST(MapDeltaState, OneDeltaTakesBothAddsAndDeletesUnderOneKey) {
  Item added;
  Item removed;
  Map live{{3, &added}};
  Map deleted{{3, &removed}};
  Delta delta(&live, &deleted);
  delta.Record(3, &removed, false);
  delta.Record(3, &added, true);
  delta.UndoIt();
  EXPECT_EQ(live, (Map{{3, &removed}}));
  delta.RedoIt();
  EXPECT_EQ(live, (Map{{3, &added}}));
}

TEST(MapDeltaState, ARepeatedKeyIsReportedAndTheLaterValueCounts) {
  Item first;
  Item second;
  Map live{{3, &second}};
  Map deleted;
  Delta delta(&live, &deleted);
  AssertWatch::Expect("m_insertedItems.find(keyVal) == m_insertedItems.end()");
  AssertWatch::Expect("m_removedItems.find(keyVal) == m_removedItems.end()");
  delta.Record(3, &first, true);
  delta.Record(3, &second, true);
  delta.Record(4, &first, false);
  delta.Record(4, &first, false);
  delta.UndoIt();
  EXPECT_EQ(deleted.at(3), &second);
}

TEST(MapDeltaState, AKeyThatTheLiveMapLostIsReported) {
  Item item;
  Map live;
  Map deleted;
  Delta delta(&live, &deleted);
  delta.Record(3, &item, true);
  AssertWatch::Expect("m_srcMap.find(k) != m_srcMap.end()");
  delta.UndoIt();
  EXPECT_EQ(deleted.at(3), &item);
}

TEST(MapDeltaState, AKeyThatTheLiveMapTookMeanwhileIsReported) {
  Item item;
  Map live{{3, &item}};
  Map deleted;
  Delta delta(&live, &deleted);
  delta.Record(3, &item, false);
  AssertWatch::Expect("m_srcMap.find(k) == m_srcMap.end()");
  delta.UndoIt();
  EXPECT_EQ(live.at(3), &item);
}

TEST(MapDeltaState, WithoutADeletedMapARedoneDeleteKeepsTheObjectForUndo) {
  auto * item = new Item;
  Map live{{3, item}};
  {
    Delta delta(&live, nullptr);
    live.erase(3);
    delta.Record(3, item, false);
    delta.UndoIt();
    delta.RedoIt();
    EXPECT_TRUE(live.empty());
    EXPECT_EQ(Item::s_alive, 1);
    delta.UndoIt();
    EXPECT_EQ(live.at(3), item);
  }
  EXPECT_EQ(Item::s_alive, 1) << "a live item belongs to the map";
  delete item;
}

TEST(MapDeltaState, WithoutADeletedMapTheDeltaOwnsWhatIsOutsideWhenItDies) {
  Map live;
  {
    Delta delta(&live, nullptr);
    delta.Record(3, new Item, false);
    delta.Record(4, new Item, false);
  }
  EXPECT_EQ(Item::s_alive, 0);
  {
    auto * item = new Item;
    live.emplace(5, item);
    Delta delta(&live, nullptr);
    delta.Record(5, item, true);
    delta.UndoIt();
  }
  EXPECT_EQ(Item::s_alive, 0);
}

TEST(MapDeltaState, WithADeletedMapTheDeltaOwnsNothing) {
  Item item;
  Map live;
  Map deleted{{3, &item}};
  { Delta(&live, &deleted).Record(3, &item, false); }
  EXPECT_EQ(Item::s_alive, 1);
}

TEST(SolutionMapDeltaState, EveryMoveIsToldToWhatIsDerivedFromTheData) {
  Item added;
  Item removed;
  Map live{{1, &added}};
  Map deleted{{2, &removed}};
  SolutionMapDeltaState<long, Item *> delta(&live, &deleted);
  delta.Record(1, &added, true);
  delta.Record(2, &removed, false);
  delta.UndoIt();
  EXPECT_EQ(added.m_updates, 1);
  EXPECT_EQ(removed.m_updates, 1);
  EXPECT_FALSE(added.m_hasData);
  delta.RedoIt();
  EXPECT_EQ(added.m_updates, 2);
  EXPECT_EQ(removed.m_updates, 2);
}

TEST(OutputVariableMapDeltaState, NamesAreKeysWithoutCase) {
  OutputVariable variable(L"Gain");
  COutputVariableMapDeltaState::Map live{{L"Gain", &variable}};
  COutputVariableMapDeltaState delta(&live);
  delta.Record(L"gain", &variable, true);
  delta.UndoIt();
  EXPECT_TRUE(live.empty());
  delta.RedoIt();
  EXPECT_EQ(live.at(L"GAIN"), &variable);
}

TEST(OutputVariableMapDeltaState, AnAddThatIsNotYetDoneHappensAtTheFirstRedo) {
  OutputVariable variable(L"Gain");
  COutputVariableMapDeltaState::Map live;
  COutputVariableMapDeltaState delta(&live, false);
  delta.Record(L"Gain", &variable, true);
  delta.RedoIt();
  EXPECT_EQ(live.at(L"Gain"), &variable);
}
