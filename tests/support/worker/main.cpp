// A program for tests of solving: a worker in several states of health, and a desktop that can be killed.

#include "basekit/text/Utf8.h"
#include "desktop/product/ProductRegistry.h"
#include "desktop/solve/SolveQueue.h"
#include "desktop/solve/SolveRun.h"
#include "desktop/solve/WorkerMessages.h"
#include "tests/support/worker/TestSolver.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <thread>
#include <unistd.h>

using namespace desktop;

namespace {

void Write(std::string_view bytes) {
  while (!bytes.empty()) {
    auto const count = ::write(1, bytes.data(), bytes.size());
    if (count <= 0)
      std::_Exit(1);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void Write(JobFrame const & frame) {
  std::string bytes;
  if (frame.Append(bytes))
    Write(bytes);
}

void SayHello(long protocol) {
  HelloMessage hello;
  hello.protocol = protocol;
  hello.product = support::TestSolver::kName;
  Write(hello.Write());
}

ResultMessage ResultFor(JobMessage const & job) {
  ResultMessage result;
  result.number = job.number;
  result.items = io::CBlock_ptr<io::CBlock>(new io::CBlock(L"Items"));
  return result;
}

// The bytes of a good frame with a length that no worker may announce.
std::string HugeFrame(JobMessage const & job) {
  std::string bytes;
  (void)ResultFor(job).Write().Append(bytes);
  std::uint64_t const length = std::uint64_t(1) << 40;
  std::memcpy(bytes.data() + 8, &length, sizeof length);
  support::SignHeader(bytes);
  return bytes;
}

void AnswerBadly(JobMessage const & message) {
  std::string const how = text::ToUtf8(message.job.variation);
  ResultMessage result = ResultFor(message);
  std::string bytes;
  if (how == "garbage")
    return Write(std::string(100000, '?'));
  if (how == "huge")
    return Write(HugeFrame(message));
  if (how == "number")
    result.number += 1000;
  if (!result.Write().Append(bytes))
    return;
  if (how == "cut") {
    Write(std::string_view(bytes).substr(0, bytes.size() / 2));
    std::_Exit(0);
  }
  if (how == "damaged")
    bytes.back() ^= 1;
  if (how == "twice")
    bytes += bytes;
  Write(bytes);
  if (how == "last words")
    std::_Exit(9);
}

// Speaks the protocol by itself, since no solver could make the real worker misbehave like this.
int BeRawWorker() {
  SayHello(kWorkerProtocol);
  JobFrameReader reader;
  JobFrame frame;
  char bytes[4096];
  for (ssize_t count = 0; (count = ::read(0, bytes, sizeof bytes)) > 0;) {
    reader.Add(std::string_view(bytes, static_cast<std::size_t>(count)));
    JobMessage message;
    while (reader.Next(frame) == JobFrameReader::Status::kFrame)
      if (message.Read(frame))
        AnswerBadly(message);
  }
  return 0;
}

/// Points that never end.
class EndlessPoints : public ISolvePoints {
public:
  explicit EndlessPoints(AString const & variation) : m_variation(variation) {}
  int CountWaiting() const override { return 2 - m_taken; }
  bool TakeNext(int & number, SolveJob & job) override {
    if (CountWaiting() == 0)
      return false;
    number = m_taken++;
    job.variation = m_variation;
    return true;
  }
  void Progressed(int, double, AString const &) override {}
  void Failed(int, AString const & error, JobCost const &) override { std::cerr << text::ToUtf8(error) << std::endl; }
  void Store(std::vector<SolvedPoint> const &) override {}

private:
  AString m_variation;
  int m_taken = 0;
};

int BeDesktop(AString const & pidFolder) {
  EndlessPoints points(L"sleep in " + pidFolder);
  SolveOptions options;
  options.workers = 2;
  options.workerWords = {L"product"};
  SolveRun(points, support::TestSolver::kName, options).Run();
  return 0;
}

} // namespace

int main(int count, char ** words) {
  std::string const role = count > 1 ? words[1] : "";
  ProductRegistry::Instance().Register(std::make_unique<support::TestSolver>());
  if (role == "product")
    return RunWorker(support::TestSolver::kName);
  if (role == "raw")
    return BeRawWorker();
  if (role == "desktop" && count > 2)
    return BeDesktop(text::FromUtf8(words[2]));
  if (role == "silent")
    std::this_thread::sleep_for(std::chrono::hours(1));
  if (role == "older")
    SayHello(kWorkerProtocol - 1);
  if (role == "leaving")
    SayHello(kWorkerProtocol);
  if (role == "chatty")
    std::puts("ready when you are");
  std::fprintf(stderr, "no licence for role '%s'\n", role.c_str());
  return 4;
}
