#include "desktop/solve/JobFrame.h"
#include "desktop/solve/WorkerMessages.h"

#include "basekit/io/CNamed_value_manip.h"
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

namespace {

// What arrives of a frame at the other end of a pipe.
JobFrame Sent(JobFrame const & frame) {
  JobFrameReader reader;
  reader.Add(BytesOf(frame));
  JobFrame read;
  EXPECT_EQ(reader.Next(read), Status::kFrame);
  return read;
}

PassMessage ExamplePass() {
  PassMessage pass;
  pass.number = 7;
  pass.index = 3;
  pass.row = io::CBlock_ptr<io::CBlock_func>(new io::CBlock_func(L"c"));
  *pass.row << io::named(L"n", 5) << io::named(L"d", 0.25);
  return pass;
}

} // namespace

TEST(JobFrame, APassComesBackWithItsRow) {
  PassMessage read;
  ASSERT_TRUE(read.Read(Sent(ExamplePass().Write())));
  EXPECT_EQ(read.number, 7);
  EXPECT_EQ(read.index, 3);
  int pass = 0;
  double delta = 0;
  *read.row >> io::named(L"n", pass) >> io::named(L"d", delta);
  EXPECT_EQ(pass, 5);
  EXPECT_EQ(delta, 0.25);
}

TEST(JobFrame, APassWithARowOfAnotherNameIsNone) {
  PassMessage pass = ExamplePass();
  pass.row = io::CBlock_ptr<io::CBlock_func>(new io::CBlock_func(L"C"));
  EXPECT_FALSE(PassMessage().Read(Sent(pass.Write())));
  EXPECT_FALSE(ConvergenceMessage().Read(Sent(ExamplePass().Write())));
  EXPECT_FALSE(ProfileMessage().Read(Sent(ExamplePass().Write())));
}

TEST(JobFrame, ConvergenceComesBack) {
  ConvergenceMessage told;
  told.number = 7;
  told.index = 2;
  told.isConverged = true;
  told.consecutivePasses = L"3 of 3";
  ConvergenceMessage read;
  ASSERT_TRUE(read.Read(Sent(told.Write())));
  EXPECT_EQ(read.number, 7);
  EXPECT_EQ(read.index, 2);
  EXPECT_TRUE(read.isConverged);
  EXPECT_EQ(read.consecutivePasses, L"3 of 3");
}

TEST(JobFrame, ACostComesBackWithItsTask) {
  CProfileTask task(L"Factor", L"2000 nodes");
  task.SetCost(2.0, 1.5, 4096.0);
  ProfileMessage told;
  told.number = 7;
  told.index = 4;
  told.update = CProfileUpdate(CProfileUpdate::kStopGroup, task, L"all of it");
  ProfileMessage read;
  ASSERT_TRUE(read.Read(Sent(told.Write())));
  EXPECT_EQ(read.number, 7);
  EXPECT_EQ(read.index, 4);
  EXPECT_EQ(read.update.GetKind(), CProfileUpdate::kStopGroup);
  EXPECT_EQ(read.update.GetInfo(), L"all of it");
  EXPECT_EQ(read.update.GetTask().GetName(), L"Factor");
  EXPECT_EQ(read.update.GetTask().GetInfo(), L"2000 nodes");
  EXPECT_EQ(read.update.GetTask().GetRealTime(), 2.0);
  EXPECT_EQ(read.update.GetTask().GetCpuTime(), 1.5);
  EXPECT_EQ(read.update.GetTask().GetMemory(), 4096.0);
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
  bytes[4] = 9;
  support::SignHeader(bytes);
  JobFrameReader reader;
  reader.Add(bytes);
  JobFrame frame;
  EXPECT_EQ(reader.Next(frame), Status::kBroken);
  EXPECT_EQ(reader.GetError(), L"it sent a message of the unknown kind 9");
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
