#include "basekit/message/MessageManager.h"
#include "basekit/message/MessageQueueRestorer.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace {

struct Collector : IMessageListener {
  void OnMessage(KelvroMessage const & message) override { numbers.push_back(message.GetNumber()); }
  std::vector<long> numbers;
};

KelvroMessage Numbered(long number) { return {number, KelvroMessage::kError, 6}; }

} // namespace

TEST(KelvroMessage, CarriesItsNumberSeverityGroupAndArguments) {
  KelvroMessage message(24586, KelvroMessage::kError, 6);
  message.Arguments().AddArg(L"C1");
  message.Arguments().AddArg(AString(L"C1=1.2pF"));
  message.Arguments().AddArg(3);
  message.Arguments().AddArg(0.1);
  EXPECT_EQ(message.GetNumber(), 24586);
  EXPECT_EQ(static_cast<int>(message.GetSeverity()), 1);
  EXPECT_EQ(message.GetMessageGroup(), 6);
  EXPECT_TRUE(message.GetContext().empty());
  EXPECT_EQ(message.Arguments().GetArgs(), (std::vector<AString>{L"C1", L"C1=1.2pF", L"3", L"0.1"}));
}

TEST(MessageManager, TellsEveryListenerOnce) {
  MessageManager manager;
  Collector first;
  Collector second;
  manager.AddListener(&first);
  manager.AddListener(&second);
  manager.AddListener(&first);
  manager.AddListener(nullptr);
  manager.Post(Numbered(1));
  manager.RemoveListener(&second);
  manager.Post(Numbered(2));
  EXPECT_EQ(first.numbers, (std::vector<long>{1, 2}));
  EXPECT_EQ(second.numbers, (std::vector<long>{1}));
}

TEST(MessageManager, AListenerMayRemoveAnotherWhileItIsTold) {
  struct Remover : IMessageListener {
    void OnMessage(KelvroMessage const &) override { manager->RemoveListener(other); }
    MessageManager * manager = nullptr;
    IMessageListener * other = nullptr;
  };
  MessageManager manager;
  Collector collector;
  Remover remover;
  remover.manager = &manager;
  remover.other = &collector;
  manager.AddListener(&remover);
  manager.AddListener(&collector);
  manager.Post(Numbered(1));
  EXPECT_TRUE(collector.numbers.empty());
}

TEST(MessageQueueRestorer, HoldsMessagesBackForItsSpanAndForgetsThem) {
  MessageManager manager;
  Collector user;
  manager.AddListener(&user);
  {
    MessageQueueRestorer const outer(&manager);
    manager.Post(Numbered(1));
    {
      MessageQueueRestorer const inner(&manager);
      manager.Post(Numbered(2));
      ASSERT_EQ(inner.Messages().size(), 1u);
      EXPECT_EQ(inner.Messages()[0].GetNumber(), 2);
    }
    EXPECT_TRUE(manager.IsHoldingBack());
    ASSERT_EQ(manager.HeldBack().size(), 1u);
    EXPECT_EQ(outer.Messages()[0].GetNumber(), 1);
  }
  EXPECT_FALSE(manager.IsHoldingBack());
  EXPECT_TRUE(manager.HeldBack().empty());
  manager.Post(Numbered(3));
  EXPECT_EQ(user.numbers, (std::vector<long>{3}));
}

TEST(MessageQueueRestorer, WorksWithoutAManager) {
  MessageQueueRestorer const restorer(nullptr);
  EXPECT_TRUE(restorer.Messages().empty());
}
