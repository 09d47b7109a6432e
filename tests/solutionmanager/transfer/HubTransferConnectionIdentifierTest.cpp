#include "solutionmanager/transfer/HubTransferConnectionIdentifier.h"

#include "basekit/io/CBlock.h"

#include <gtest/gtest.h>

namespace {

void ExpectRoundTrip(HubTransferConnectionIdentifier const & identifier) {
  io::CBlock block(identifier.GetItemName());
  ASSERT_TRUE(identifier.Write(block));
  ASSERT_EQ(block.Size(), 2);
  EXPECT_EQ((*block.begin())->Name(), L"TransferType");
  HubTransferConnectionIdentifier read(L"x", L"y");
  EXPECT_EQ(read.Read(block), io::kNoError);
  EXPECT_EQ(read.GetTransferType(), identifier.GetTransferType());
  EXPECT_EQ(read.GetGuid(), identifier.GetGuid());
}

} // namespace

TEST(HubTransferConnectionIdentifier, ComesBackFromItsBlock) {
  ExpectRoundTrip(HubTransferConnectionIdentifier(L"thermal", L"{4-5}"));
  EXPECT_EQ(HubTransferConnectionIdentifier().GetItemName(), L"TransferConnectionIdentifier");
}

TEST(HubTransferConnectionIdentifier, AnEmptyOneStreamsWithBothValuesEmpty) {
  ExpectRoundTrip(HubTransferConnectionIdentifier());
}

TEST(HubTransferConnectionIdentifier, AMissingValueIsRecorded) {
  HubTransferConnectionIdentifier read;
  EXPECT_EQ(read.Read(io::CBlock(read.GetItemName())), io::kNotFound);
}
