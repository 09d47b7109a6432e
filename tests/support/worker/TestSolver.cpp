#include "tests/support/worker/TestSolver.h"

#include "basekit/io/CBlock_func.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/io/Checksum.h"
#include "basekit/profile/CProfileUpdate.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/PeakMemory.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <thread>
#include <unistd.h>
#include <vector>

namespace support {

namespace {

using desktop::IJobProgress;
using desktop::SolveJob;

bool Has(AString const & variation, wchar_t const * word) { return variation.find(AString(word)) != AString::npos; }

// A file of the process's number in the folder that the text names behind "in".
void LeaveNumber(AString const & variation) {
  std::size_t const at = variation.find(AString(L" in "));
  if (at == AString::npos)
    return;
  std::ofstream(text::ToUtf8(variation.substr(at + 4)) + "/" + std::to_string(::getpid())) << "here\n";
}

io::CBlock Nested(int depth) {
  io::CBlock block(L"Deep");
  for (int level = 0; level < depth; ++level) {
    io::CBlock outer(L"Deep");
    outer << io::CBlock_ptr<io::CBlock>(new io::CBlock(std::move(block)));
    block = std::move(outer);
  }
  return block;
}

/// Keeps the source of its first job, as a product keeps what it parsed.
class Runner : public desktop::IJobRunner {
public:
  bool Run(SolveJob const & job, io::CBlock & result, AString & error, IJobProgress & progress) override {
    AString const & variation = job.variation;
    Break(variation);
    if (Has(variation, L"refuse") && !Has(variation, L"then refuse")) {
      error = L"node 7 has no\nconnection";
      return false;
    }
    if (!m_hasRead && !job.sources.empty())
      Read(job.sourceFile);
    if (Has(variation, L"slow"))
      std::this_thread::sleep_for(std::chrono::milliseconds(300));
    if (Has(variation, L"peak"))
      TellPeak(progress);
    if (Has(variation, L"tell"))
      Tell(progress);
    if (Has(variation, L"flood"))
      Flood(progress, Has(variation, L"passes"));
    if (Has(variation, L"passes"))
      TellPasses(progress, Has(variation, L"slowly"));
    if (Has(variation, L"then refuse")) {
      error = L"it does not converge";
      return false;
    }
    io::CBlock_func values(L"Values");
    values << static_cast<double>(variation.size()) << static_cast<double>(++m_solved)
           << static_cast<double>(::getpid());
    for (int i = 0; Has(variation, L"large") && i < 200'000; ++i)
      values << 0.5 * i;
    if (!job.sources.empty())
      values << m_source;
    result << values;
    if (Has(variation, L"deep"))
      result << Nested(600);
    return true;
  }

private:
  void Break(AString const & variation) {
    for (int i = 0; Has(variation, L"print") && i < 20000; ++i)
      std::printf("line %d of what a solver tells about itself\n", i);
    if (Has(variation, L"leave"))
      LeaveProcess();
    if (Has(variation, L"heap"))
      TakeMemory();
    for (int i = 0; Has(variation, L"gossip") && i < 100'000; ++i)
      std::fprintf(stderr, "line %d of what a solver tells about itself\n", i);
    if (Has(variation, L"abort")) {
      std::fprintf(stderr, "matrix\tis singular\n");
      std::abort();
    }
    if (Has(variation, L"exit")) {
      std::printf("leaving\n");
      std::exit(3);
    }
    if (Has(variation, L"sleep")) {
      LeaveNumber(variation);
      std::fprintf(stderr, "waiting for a licence\n");
      std::this_thread::sleep_for(std::chrono::hours(1));
    }
    if (Has(variation, L"throw"))
      throw std::runtime_error("out of ideas");
  }

  void Tell(IJobProgress & progress) {
    for (int step = 0; step < 30; ++step) {
      progress.Report(step / 30.0, L"factoring");
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  }

  void TellPeak(IJobProgress & progress) {
    CProfileTask task(L"Peak", L"");
    task.SetCost(0, 0, desktop::PeakMemory());
    progress.ReportProfile({CProfileUpdate::kTask, task}, 0);
  }

  // The child outlives its worker, and holds all that it has open.
  void LeaveProcess() {
    if (::fork() == 0) {
      std::this_thread::sleep_for(std::chrono::minutes(10));
      std::_Exit(0);
    }
  }

  void TakeMemory() {
    std::vector<char> const memory(64 * 1024 * 1024, 'x');
    std::fprintf(stderr, "%zu bytes\n", memory.size());
  }

  static io::CBlock_ptr<io::CBlock_func> Row(int pass, double delta) {
    io::CBlock_ptr<io::CBlock_func> const row(new io::CBlock_func(L"c"));
    *row << io::named(L"n", pass) << io::named(L"d", delta);
    return row;
  }

  void TellPasses(IJobProgress & progress, bool isSlow) {
    progress.ReportProfile({CProfileUpdate::kStartGroup, CProfileTask(L"Passes", L"adaptive")}, 0);
    for (int pass = 1; pass <= 3; ++pass) {
      progress.ReportPass(Row(pass, 1.0 / (1 << pass)), -1);
      CProfileTask task(L"Factor", AString::Format(L"pass %d", pass));
      task.SetCost(0.5, 0.25, 1024.0 * pass);
      progress.ReportProfile({CProfileUpdate::kTask, task}, 0);
      if (isSlow)
        std::this_thread::sleep_for(std::chrono::milliseconds(700));
    }
    progress.ReportProfile({CProfileUpdate::kStopGroup, CProfileTask(), L"three passes"}, 0);
    progress.ReportConvergence(true, L"2", -1);
  }

  [[noreturn]] void Flood(IJobProgress & progress, bool withPasses) {
    for (int i = 0;; ++i)
      withPasses ? progress.ReportPass(Row(i, 0.5), -1)
                 : progress.ReportProfile({CProfileUpdate::kTask, CProfileTask(L"Step", L"")}, 0);
  }

  // The number in the file.
  void Read(AString const & file) {
    std::ifstream(text::ToUtf8(file)) >> m_source;
    m_hasRead = true;
  }

  int m_solved = 0;
  double m_source = 0;
  bool m_hasRead = false;
};

} // namespace

void TestSolver::DescribeJob(BaseSimulationSetup const &, SolveJob & job) const {
  job.settings << io::CBlock_named_value(L"Passes", io::CBlock_value(3));
}

std::unique_ptr<desktop::IJobRunner> TestSolver::MakeJobRunner() const { return std::make_unique<Runner>(); }

void SignHeader(std::string & frame) {
  constexpr std::size_t kChecksumAt = 20;
  std::uint32_t const checksum = io::Checksum(std::string_view(frame).substr(0, kChecksumAt));
  std::memcpy(frame.data() + kChecksumAt, &checksum, sizeof checksum);
}

} // namespace support
