#include "solutionmanager/undo/CPreserveStateDeltaState_T.h"

#include <gtest/gtest.h>

namespace {

struct Object {
  void GetState(long & state) const { state = m_state; }
  void SetState(long const & state, bool undo) {
    m_state = state;
    m_lastWasUndo = undo;
  }
  long m_state = 0;
  bool m_lastWasUndo = false;
};

using Delta = CPreserveStateDeltaState_T<Object, long>;

} // namespace

TEST(PreserveState, AddGivesTheNewStateAndRecordsTheOldOne) {
  Object object{7};
  Delta delta(12);
  delta.Add(&object);
  EXPECT_EQ(object.m_state, 12);
  EXPECT_EQ(delta.GetCount(), 1);
}

TEST(PreserveState, AnObjectThatHoldsTheStateAlreadyIsNotRecorded) {
  Object object{12};
  Delta delta(12);
  delta.Add(&object);
  delta.Add(nullptr);
  EXPECT_EQ(delta.GetCount(), 0);
}

TEST(PreserveState, UndoRedoUndoEndsInTheOldState) {
  Object a{7};
  Object b{8};
  Delta delta(12);
  delta.Add(&a);
  delta.Add(&b);
  delta.UndoIt();
  EXPECT_EQ(a.m_state, 7);
  EXPECT_EQ(b.m_state, 8);
  EXPECT_TRUE(a.m_lastWasUndo);
  delta.RedoIt();
  EXPECT_EQ(a.m_state, 12);
  EXPECT_FALSE(a.m_lastWasUndo);
  delta.UndoIt();
  EXPECT_EQ(a.m_state, 7);
  EXPECT_EQ(b.m_state, 8);
}

TEST(PreserveState, WhatAnObjectHeldAtUndoIsWhatRedoGivesItBack) {
  Object object{7};
  Delta delta(12);
  delta.Add(&object);
  object.m_state = 15;
  delta.UndoIt();
  EXPECT_EQ(object.m_state, 7);
  delta.RedoIt();
  EXPECT_EQ(object.m_state, 15);
}

TEST(PreserveState, TheBaseKnowsWhetherTheChangeStands) {
  Delta delta(12);
  EXPECT_TRUE(delta.IsStateChangeDone());
  delta.UndoIt();
  EXPECT_FALSE(delta.IsStateChangeDone());
  delta.RedoIt();
  EXPECT_TRUE(delta.IsStateChangeDone());
}
