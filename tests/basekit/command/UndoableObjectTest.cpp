#include "basekit/command/CUndoableObjectDeltaState.h"

#include "basekit/command/KelvroCommand.h"
#include "basekit/command/MUndoableObject.h"

#include <gtest/gtest.h>

namespace {

class Number : public MUndoableObject {
public:
  explicit Number(int initial) : value(initial) {}
  void Assign(MUndoableObject const & other) override { value = dynamic_cast<Number const &>(other).value; }
  Number * Clone() const override { return new Number(*this); }

  int value;
};

} // namespace

TEST(UndoableObject, GetsItsContentsBackAndTheLaterOnesAgain) {
  Number number(1);
  CUndoableObjectDeltaState delta(number);
  number.value = 2;
  for (int round = 0; round < 3; ++round) {
    EXPECT_TRUE(delta.IsStateChangeDone());
    delta.UndoIt();
    EXPECT_EQ(number.value, 1);
    EXPECT_FALSE(delta.IsStateChangeDone());
    delta.RedoIt();
    EXPECT_EQ(number.value, 2);
  }
}

TEST(UndoableObject, SeveralEditsOfACommandAreTakenBackInTheirOrder) {
  Number number(1);
  KelvroCommand command(L"Edit");
  for (int const value : {2, 3, 4}) {
    command.AddDeltaState(new CUndoableObjectDeltaState(number));
    number.value = value;
  }
  command.Undo();
  EXPECT_EQ(number.value, 1);
  command.Redo();
  EXPECT_EQ(number.value, 4);
}

TEST(UndoableObject, ThatIsGoneIsPassedOver) {
  auto number = std::make_unique<Number>(1);
  CUndoableObjectDeltaState delta(*number);
  number.reset();
  delta.UndoIt();
  delta.RedoIt();
  EXPECT_TRUE(delta.IsStateChangeDone());
}

TEST(UndoableObject, ACopyIsAnObjectOfItsOwn) {
  auto number = std::make_unique<Number>(1);
  CUndoableObjectDeltaState delta(*number);
  Number copy(*number);
  copy = *number;
  number->value = copy.value = 2;
  delta.UndoIt();
  EXPECT_EQ(number->value, 1);
  EXPECT_EQ(copy.value, 2);
  number.reset();
  delta.RedoIt();
  EXPECT_EQ(copy.value, 2);
}
