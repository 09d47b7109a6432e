#include "solutionmanager/transfer/HubTransferConnectionIdentifier.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"

#include <gtest/gtest.h>

namespace {

using Identifier = HubTransferConnectionIdentifier;
using io::CStreamio_block_object;

// Of what a block object may override it has its own destructor, name and exchange; all else is the block object's.
static_assert(std::is_base_of_v<CStreamio_block_object, Identifier>);
static_assert(std::is_same_v<decltype(&Identifier::GetItemName), AString (Identifier::*)() const>);
static_assert(std::is_same_v<decltype(&Identifier::DoDataExchange), io::ReadError (Identifier::*)(io::CBlock &, bool)>);
static_assert(
    std::is_same_v<decltype(&Identifier::Read), io::ReadError (CStreamio_block_object::*)(io::CBlock const &)>);
static_assert(std::is_same_v<decltype(&Identifier::Write), bool (CStreamio_block_object::*)(io::CBlock &) const>);
static_assert(
    std::is_same_v<decltype(&Identifier::SetScriptArgBlock), void (CStreamio_block_object::*)(io::CBlock const &)>);
static_assert(std::is_same_v<decltype(std::declval<Identifier const &>().GetGuid()), AString const &>);
static_assert(std::is_same_v<decltype(std::declval<Identifier const &>().GetTransferType()), AString const &>);

void ExpectRoundTrip(Identifier const & identifier) {
  io::CBlock block(identifier.GetItemName());
  ASSERT_TRUE(identifier.Write(block));
  ASSERT_EQ(block.Size(), 2);
  EXPECT_EQ((*block.begin())->Name(), L"TransferType");
  EXPECT_EQ((*std::next(block.begin()))->Name(), L"GUID");
  Identifier read(L"x", L"y");
  EXPECT_EQ(read.Read(block), io::kNoError);
  EXPECT_EQ(read.GetTransferType(), identifier.GetTransferType());
  EXPECT_EQ(read.GetGuid(), identifier.GetGuid());
}

io::CBlock BlockOf(std::vector<std::pair<AString, AString>> const & items) {
  io::CBlock block(Identifier().GetItemName());
  for (auto const & [name, text] : items)
    block << io::named(name, text);
  return block;
}

/// Keeps what the exchange records of itself.
class RecordingIdentifier : public Identifier {
public:
  std::vector<io::ReadError> recorded;

protected:
  void RecordError(io::ReadError const & error) override { recorded.push_back(error); }
};

} // namespace

TEST(HubTransferConnectionIdentifier, ComesBackFromItsBlock) {
  ExpectRoundTrip(Identifier(L"thermal", L"{4-5}"));
  EXPECT_EQ(Identifier().GetItemName(), L"TransferConnectionIdentifier");
}

TEST(HubTransferConnectionIdentifier, AnEmptyOneStreamsWithBothValuesEmpty) { ExpectRoundTrip(Identifier()); }

TEST(HubTransferConnectionIdentifier, KeepsTextsThatAFileHasToEscape) {
  ExpectRoundTrip(Identifier(L"S \"parameters\"\\ {1}\n", L"\u00e4\u4e2d \t'"));
}

TEST(HubTransferConnectionIdentifier, OfAMissingValueTheOtherOneIsReadAllTheSame) {
  Identifier read;
  EXPECT_EQ(read.Read(BlockOf({{L"GUID", L"{7}"}})), io::kNotFound);
  EXPECT_EQ(read.GetGuid(), L"{7}");
  EXPECT_EQ(read.GetTransferType(), L"");
  EXPECT_EQ(read.Read(BlockOf({{L"TransferType", L"kind"}})), io::kNotFound);
  EXPECT_EQ(read.GetTransferType(), L"kind");
}

TEST(HubTransferConnectionIdentifier, AReadThatFailedDoesNotMarkTheNextOne) {
  Identifier read;
  EXPECT_EQ(read.Read(BlockOf({})), io::kNotFound);
  EXPECT_EQ(read.Read(BlockOf({{L"TransferType", L"kind"}, {L"GUID", L"{7}"}})), io::kNoError);
}

TEST(HubTransferConnectionIdentifier, TheSumOfBothExchangesIsRecordedOnceAndReturned) {
  RecordingIdentifier read;
  io::CBlock missing = BlockOf({{L"GUID", L"{7}"}});
  EXPECT_EQ(read.DoDataExchange(missing, true), io::kNotFound);
  EXPECT_EQ(read.recorded, (std::vector<io::ReadError>{io::kNotFound}));
  io::CBlock written(read.GetItemName());
  EXPECT_EQ(read.DoDataExchange(written, false), io::kNoError);
  EXPECT_EQ(read.recorded, (std::vector<io::ReadError>{io::kNotFound, io::kNoError}));
}
