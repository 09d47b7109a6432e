#include "basekit/command/KelvroCommand.h"
#include "basekit/command/CPreserveStateDeltaState.h"
#include "basekit/command/PropertyCommandInfo.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class Recorder : public KelvroDeltaState {
public:
  Recorder(char letter, std::string & log, KelvroCommand const * command = nullptr)
      : KelvroDeltaState(true), m_letter(letter), m_log(log), m_command(command) {}
  ~Recorder() override { m_log += std::string("~") + m_letter; }
  void UndoIt() override {
    KelvroDeltaState::UndoIt();
    m_log += std::string(m_command && m_command->IsUndoing() ? "U" : "u") + m_letter;
  }
  void RedoIt() override {
    KelvroDeltaState::RedoIt();
    m_log += std::string(m_command && m_command->IsRedoing() ? "R" : "r") + m_letter;
  }

private:
  char m_letter;
  std::string & m_log;
  KelvroCommand const * m_command;
};

struct CountedInfo : KelvroCommandInfo {
  explicit CountedInfo(int & deleted) : m_deleted(deleted) {}
  ~CountedInfo() override { ++m_deleted; }
  int & m_deleted;
};

} // namespace

TEST(KelvroCommand, UndoesBackwardsAndRedoesForwards) {
  std::string log;
  {
    KelvroCommand command(L"edit");
    command.AddDeltaState(new Recorder('a', log));
    command.AddDeltaState(nullptr);
    command.AddDeltaState(new Recorder('b', log));
    command.Undo();
    command.Redo();
    command.Undo();
  }
  EXPECT_EQ(log, "ubuararbubua~b~a");
}

TEST(KelvroCommand, TellsWhichWayItRuns) {
  std::string log;
  KelvroCommand command(L"edit");
  command.AddDeltaState(new Recorder('a', log, &command));
  EXPECT_FALSE(command.IsUndoing());
  command.Undo();
  command.Redo();
  EXPECT_EQ(log, "UaRa");
  EXPECT_FALSE(command.IsUndoing() || command.IsRedoing() || command.IsRollingBack());
}

TEST(KelvroCommand, WhatIsTakenBackIsNotTakenBackAgain) {
  std::string log;
  KelvroCommand command(L"edit");
  command.AddDeltaState(new Recorder('a', log));
  command.Redo();
  command.RollBack();
  command.Undo();
  EXPECT_EQ(log, "ua");
}

TEST(KelvroCommand, OwnsOneInfoANumber) {
  int deleted = 0;
  {
    KelvroCommand command(L"edit");
    auto * const info = new CountedInfo(deleted);
    command.SetInfo(KelvroCommandInfo::kDesignProperties, info);
    command.SetInfo(KelvroCommandInfo::kDesignProperties, info);
    EXPECT_EQ(command.GetInfo(15), info);
    EXPECT_EQ(command.GetInfo(16), nullptr);
    command.SetInfo(15, new CountedInfo(deleted));
    EXPECT_EQ(deleted, 1);
    command.SetInfo(26, new CountedInfo(deleted));
    command.SetInfo(26, nullptr);
    EXPECT_EQ(deleted, 2);
    EXPECT_EQ(command.GetInfo(26), nullptr);
  }
  EXPECT_EQ(deleted, 3);
}

TEST(KelvroDeltaState, ChangeIsDoneFromTheStartUnlessToldOtherwise) {
  KelvroDeltaState pending(false);
  EXPECT_FALSE(pending.IsStateChangeDone());
  pending.RedoIt();
  EXPECT_TRUE(pending.IsStateChangeDone());
  CPreserveStateDeltaState preserved;
  EXPECT_TRUE(preserved.IsStateChangeDone());
  preserved.UndoIt();
  EXPECT_FALSE(preserved.IsStateChangeDone());
  EXPECT_TRUE(pending.IsEquivalent(pending));
  EXPECT_FALSE(pending.IsEquivalent(preserved));
}

TEST(PropertyCommandInfo, AnswersByTheFlagsOfItsProperties) {
  PropertyCommandInfo info;
  EXPECT_FALSE(info.IsAnyPropCreated() || info.IsAnyPropDeleted() || info.IsAnyPropEdited());
  info.AddProperty(L"C1", PropertyCommandInfo::kVariableProp | PropertyCommandInfo::kEdited);
  info.AddProperty(L"colour", PropertyCommandInfo::kDeleted);
  EXPECT_TRUE(info.IsAnyPropEdited());
  EXPECT_TRUE(info.IsAnyPropDeleted());
  EXPECT_FALSE(info.IsAnyPropCreated());
  EXPECT_TRUE(info.GetProperties()[0].IsVariableProp());
  EXPECT_FALSE(info.GetProperties()[1].IsVariableProp());
  EXPECT_EQ(info.GetProperties()[0].GetFlags() >> 16, 1u);
}
