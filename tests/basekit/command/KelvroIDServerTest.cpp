#include "basekit/command/KelvroIDServer.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <limits>

TEST(KelvroIDServer, CountsUpFromItsStart) {
  KelvroIDServer server;
  EXPECT_EQ(server.FetchNextUniqueID(), id::initialID);
  EXPECT_EQ(server.FetchNextUniqueID(), id::initialID + 1);
  EXPECT_EQ(KelvroIDServer(7, false, nullptr).FetchNextUniqueID(), 7);
}

TEST(KelvroIDServer, TakesIDsFromItsParentAndStaysBehindThem) {
  KelvroIDServer parent(100);
  KelvroIDServer child(1, false, &parent);
  EXPECT_EQ(child.FetchNextUniqueID(), 100);
  EXPECT_EQ(parent.FetchNextUniqueID(), 101);
  EXPECT_EQ(child.PeekNextUniqueID(), 101);
}

TEST(KelvroIDServer, TheEndOfTheIDsIsReported) {
  KelvroIDServer server(std::numeric_limits<long>::max() - 1);
  EXPECT_EQ(server.FetchNextUniqueID(), std::numeric_limits<long>::max() - 1);
  support::AssertWatch::Expect("!\"No unique IDs left\"");
  EXPECT_EQ(server.FetchNextUniqueID(), id::invalidID);
  EXPECT_EQ(server.FetchNextUniqueID(), id::invalidID);
}

TEST(KelvroIDServer, TheCounterGoesThroughABlock) {
  KelvroIDServer written(42);
  io::CBlock block(L"FileHeader");
  EXPECT_TRUE(written.WriteNextUniqueID(block));
  long next = 0;
  block >> io::named(L"NextUniqueID", next);
  EXPECT_EQ(next, 42);
  KelvroIDServer read;
  read.ResetNextUniqueID(block);
  EXPECT_EQ(read.FetchNextUniqueID(), 42);
}

TEST(KelvroIDServer, ABlockNeverMovesTheCounterBack) {
  io::CBlock block(L"FileHeader");
  KelvroIDServer(5).WriteNextUniqueID(block);
  KelvroIDServer server(50);
  server.ResetNextUniqueID(block);
  EXPECT_EQ(server.FetchNextUniqueID(), 50);
  KelvroIDServer kept(1, true);
  kept.ResetNextUniqueID(block);
  EXPECT_EQ(kept.FetchNextUniqueID(), 1);
  server.ResetNextUniqueID(io::CBlock(L"empty"));
  EXPECT_EQ(server.FetchNextUniqueID(), 51);
}

TEST(KelvroIDServer, IDsThatAreTakenAreNotGivenOut) {
  KelvroIDServer server(5);
  server.ReserveUniqueID(3);
  EXPECT_EQ(server.FetchNextUniqueID(), 5);
  server.ReserveUniqueID(9);
  EXPECT_EQ(server.FetchNextUniqueID(), 10);
  server.ReserveUniqueID(std::numeric_limits<long>::max());
  server.ReserveUniqueID(std::numeric_limits<long>::min());
  EXPECT_EQ(server.FetchNextUniqueID(), 11);
  KelvroIDServer kept(1, true);
  kept.ReserveUniqueID(9);
  EXPECT_EQ(kept.FetchNextUniqueID(), 1);
}

TEST(KelvroIDServer, ABlockCannotUseUpTheIDs) {
  io::CBlock block(L"FileHeader");
  long const huge = std::numeric_limits<long>::max();
  block << io::named(L"NextUniqueID", huge);
  KelvroIDServer server(3);
  support::AssertWatch::Expect("!\"Next unique ID out of range\"");
  server.ResetNextUniqueID(block);
  EXPECT_EQ(server.FetchNextUniqueID(), 3);
}

TEST(KelvroIDServer, AnItemThatIsNoNumberChangesNothing) {
  io::CBlock block(L"FileHeader");
  block << io::named(L"NextUniqueID", L"many");
  KelvroIDServer server(3);
  server.ResetNextUniqueID(block);
  EXPECT_EQ(server.FetchNextUniqueID(), 3);
}
