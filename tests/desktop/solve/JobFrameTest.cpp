#include "desktop/solve/JobFrame.h"
#include "desktop/solve/WorkerMessages.h"

#include "tests/support/Printers.h"
#include "tests/support/worker/TestSolver.h"

#include <cstring>
#include <gtest/gtest.h>

using namespace desktop;
using Status = JobFrameReader::Status;

namespace {

JobMessage ExampleJob() {
  JobMessage message;
  message.number = 41;
  message.job.sourceFile = L"folder/filter \u03A9.cir";
  message.job.setupName = L"Sweep \"A\"";
  message.job.setupType = L"SParameters";
  message.job.variation = L"C1=1.2pF; L1=4nH";
  message.job.settings = io::CBlock(L"OwnName");
  message.job.settings << io::CBlock_named_value(L"Tolerance", io::CBlock_value(0.1));
  return message;
}

std::string BytesOf(JobFrame const & frame) {
  std::string bytes;
  EXPECT_TRUE(frame.Append(bytes));
  return bytes;
}

} // namespace

TEST(JobFrame, AJobComesBackWithAllItsParts) {
  JobFrameReader reader;
  reader.Add(BytesOf(ExampleJob().Write()));
  JobFrame frame;
  ASSERT_EQ(reader.Next(frame), Status::kFrame);
  EXPECT_TRUE(reader.IsBetweenFrames());
  JobMessage read;
  ASSERT_TRUE(read.Read(frame));
  JobMessage const written = ExampleJob();
  EXPECT_EQ(read.number, written.number);
  EXPECT_EQ(read.job.sourceFile, written.job.sourceFile);
  EXPECT_EQ(read.job.setupName, written.job.setupName);
  EXPECT_EQ(read.job.setupType, written.job.setupType);
  EXPECT_EQ(read.job.variation, written.job.variation);
  EXPECT_EQ(read.job.settings.Name(), L"OwnName");
  auto const * const tolerance = read.job.settings.FindItem(L"Tolerance", io::CBlock_item::Kind::NamedValue);
  double value = 0;
  ASSERT_TRUE(tolerance && tolerance->Query(value));
  EXPECT_EQ(value, 0.1);
}

TEST(JobFrame, AMessageIsNotTakenForOneOfAnotherKind) {
  JobFrame const frame = ExampleJob().Write();
  EXPECT_FALSE(HelloMessage().Read(frame));
  EXPECT_FALSE(ProgressMessage().Read(frame));
  EXPECT_FALSE(ResultMessage().Read(frame));
  EXPECT_FALSE(ErrorMessage().Read(frame));
  EXPECT_FALSE(JobMessage().Read(HelloMessage().Write()));
}

TEST(JobFrame, FramesArriveInWhateverPieces) {
  std::string const bytes = BytesOf(ExampleJob().Write()) + BytesOf(HelloMessage().Write());
  JobFrameReader reader;
  std::vector<FrameKind> kinds;
  JobFrame frame;
  for (char const byte : bytes) {
    reader.Add(std::string_view(&byte, 1));
    if (reader.Next(frame) == Status::kFrame)
      kinds.push_back(frame.kind);
  }
  EXPECT_EQ(kinds, (std::vector{FrameKind::kJob, FrameKind::kHello}));
  EXPECT_TRUE(reader.IsBetweenFrames());
}

TEST(JobFrame, AFrameCutAtAnyByteIsWaitedForAndSeenAsCut) {
  std::string const bytes = BytesOf(ExampleJob().Write());
  for (std::size_t length = 1; length < bytes.size(); ++length) {
    JobFrameReader reader;
    reader.Add(std::string_view(bytes).substr(0, length));
    JobFrame frame;
    EXPECT_EQ(reader.Next(frame), Status::kNeedsMore) << length;
    EXPECT_FALSE(reader.IsBetweenFrames()) << length;
  }
}

TEST(JobFrame, AnyFlippedBitBreaksTheStreamForGood) {
  std::string const bytes = BytesOf(ExampleJob().Write());
  for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
    std::string damaged = bytes;
    damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << (bit % 8)));
    JobFrameReader reader;
    reader.Add(damaged);
    JobFrame frame;
    ASSERT_EQ(reader.Next(frame), Status::kBroken) << bit;
    EXPECT_FALSE(reader.GetError().empty());
    reader.Add(bytes);
    ASSERT_EQ(reader.Next(frame), Status::kBroken) << bit;
  }
}

TEST(JobFrame, ALengthBeyondTheLimitIsRefusedThoughItsChecksumIsRight) {
  std::string bytes = BytesOf(ExampleJob().Write());
  std::uint64_t const length = JobFrame::kLongestPayload + 1;
  std::memcpy(bytes.data() + 8, &length, sizeof length);
  support::SignHeader(bytes);
  JobFrameReader reader;
  reader.Add(bytes);
  JobFrame frame;
  EXPECT_EQ(reader.Next(frame), Status::kBroken);
  EXPECT_EQ(reader.GetError(), L"it announced a message of 1073741825 bytes");
}

TEST(JobFrame, AnUnknownKindIsRefused) {
  std::string bytes = BytesOf(ExampleJob().Write());
  bytes[4] = 6;
  support::SignHeader(bytes);
  JobFrameReader reader;
  reader.Add(bytes);
  JobFrame frame;
  EXPECT_EQ(reader.Next(frame), Status::kBroken);
  EXPECT_EQ(reader.GetError(), L"it sent a message of the unknown kind 6");
}

TEST(JobFrame, ABlockNestedTooDeeplyIsNotSent) {
  JobFrame frame;
  for (int level = 0; level < 600; ++level) {
    io::CBlock outer(L"Level");
    outer << io::CBlock_ptr<io::CBlock>(new io::CBlock(std::move(frame.payload)));
    frame.payload = std::move(outer);
  }
  std::string bytes;
  EXPECT_FALSE(frame.Append(bytes));
  EXPECT_TRUE(bytes.empty());
}
