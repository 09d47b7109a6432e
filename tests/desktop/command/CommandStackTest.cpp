#include "desktop/command/CommandStack.h"

#include "basekit/command/KelvroCommand.h"
#include "desktop/command/Deltas.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

using desktop::CommandGroup;
using desktop::CommandStack;

namespace {

/// Commands that append a letter to a text, and take it off again.
class CommandStackTest : public testing::Test {
protected:
  void Do(wchar_t letter) {
    auto command = std::make_unique<KelvroCommand>(AString(std::wstring(1, letter)));
    auto const kept = std::make_shared<std::wstring>(m_text + letter);
    command->AddDeltaState(new desktop::ExchangeDelta([this, kept] { m_text.swap(*kept); }));
    m_stack.Push(std::move(command));
  }

  std::wstring m_text;
  CommandStack m_stack;
};

} // namespace

TEST_F(CommandStackTest, GoesBackAndForthStepByStep) {
  Do(L'a');
  Do(L'b');
  EXPECT_TRUE(m_stack.Undo());
  EXPECT_EQ(m_text, L"a");
  EXPECT_TRUE(m_stack.Undo());
  EXPECT_FALSE(m_stack.Undo());
  EXPECT_EQ(m_text, L"");
  EXPECT_TRUE(m_stack.Redo());
  EXPECT_TRUE(m_stack.Redo());
  EXPECT_FALSE(m_stack.Redo());
  EXPECT_EQ(m_text, L"ab");
}

TEST_F(CommandStackTest, ANewCommandForgetsWhatWasUndone) {
  Do(L'a');
  m_stack.Undo();
  Do(L'b');
  EXPECT_FALSE(m_stack.Redo());
  EXPECT_EQ(m_stack.Size(), 1u);
  EXPECT_EQ(m_stack.NameAt(0), L"b");
}

TEST_F(CommandStackTest, AGroupIsOneStepUnderTheNameOfTheOutermost) {
  {
    CommandGroup const outer(m_stack, L"outer");
    Do(L'a');
    CommandGroup const inner(m_stack, L"inner");
    Do(L'b');
    EXPECT_FALSE(m_stack.Undo()) << "a group is open";
  }
  Do(L'c');
  ASSERT_EQ(m_stack.Size(), 2u);
  EXPECT_EQ(m_stack.NameAt(0), L"outer");
  m_stack.Undo();
  m_stack.Undo();
  EXPECT_EQ(m_text, L"");
  m_stack.Redo();
  EXPECT_EQ(m_text, L"ab");
}

TEST_F(CommandStackTest, AnEmptyGroupLeavesNothing) {
  { CommandGroup const group(m_stack, L"nothing"); }
  EXPECT_EQ(m_stack.Size(), 0u);
}

TEST_F(CommandStackTest, IsCleanWhereItWasSavedAndNowhereElse) {
  Do(L'a');
  EXPECT_FALSE(m_stack.IsClean());
  m_stack.MarkClean();
  Do(L'b');
  EXPECT_FALSE(m_stack.IsClean());
  m_stack.Undo();
  EXPECT_TRUE(m_stack.IsClean());
  m_stack.Undo();
  Do(L'c');
  EXPECT_FALSE(m_stack.IsClean()) << "another command stands where the saved one stood";
}

TEST_F(CommandStackTest, TellsHowFarAwayAnEntryIs) {
  long const first = m_stack.NextSerial();
  Do(L'a');
  Do(L'b');
  EXPECT_EQ(m_stack.UndosTo(first), 2u);
  EXPECT_EQ(m_stack.RedosTo(first), 0u);
  m_stack.Undo();
  m_stack.Undo();
  EXPECT_EQ(m_stack.UndosTo(first), 0u);
  EXPECT_EQ(m_stack.RedosTo(first), 1u);
}
