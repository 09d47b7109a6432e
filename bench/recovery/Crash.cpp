#include "bench/recovery/Crash.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/text/Utf8.h"
#include "bench/support/Measure.h"
#include "bench/support/Values.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/recovery/RecoveryReport.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace bench {

namespace {

constexpr long kSetup = 3;
constexpr long kSolution = 5;
/// So many solved points a worker hands over at once.
constexpr std::size_t kBatch = 100;

LongFileName Library(CrashedDesign const & design) { return text::FromUtf8(design.folder + "/bench.qsol"); }

std::string PrivateFile(CrashedDesign const & design) { return design.folder + "/bench.qsol_priv"; }

AString VariationOf(std::size_t number) {
  return AString::Format(L"C1=\"%lu.25pF\"; L1=\"4.7nH\"; W1=\"0.35mm\"", number);
}

void Check(CStreamioLibrary::LibIOReturn result) {
  Require(result == CStreamioLibrary::kLibSuccess, "the library failed: " + std::to_string(result));
}

io::CBlock DataBlock(AString const & variation, std::size_t number, std::size_t payload) {
  io::CBlock_func values(L"Values");
  for (double const value : ValuesOf(number, payload))
    values << value;
  io::CBlock block(SolutionVariationKey(kSetup, variation, kSolution, 0).Pack());
  block << values;
  return block;
}

void SaveDefinition(BaseSolutionManager const & manager, BaseSolution const & solution) {
  io::CBlock definition(solution.GetBlockDefinitionName());
  Require(solution.WriteDefinitionBlock(definition), "the solution has no definition");
  Check(manager.SaveSingleBlock(definition));
}

void SolveBatch(BaseSolutionManager & manager, BaseSolution & solution, std::size_t first, std::size_t end,
                std::size_t payload) {
  std::vector<AString> variations;
  io::CBlock batch(L"Batch");
  for (std::size_t number = first; number < end; ++number) {
    variations.push_back(VariationOf(number));
    batch << DataBlock(variations.back(), number, payload);
  }
  manager.IssueVariationIDs(variations);
  Check(manager.SaveBlocks(batch));
  for (AString const & variation : variations)
    solution.EnsureVariation(variation, 0);
  SaveDefinition(manager, solution);
}

} // namespace

void SolveAndDie(CrashedDesign const & design) {
  BaseSolutionManager manager(Library(design));
  manager.SetBinaryMode(design.isBinary);
  auto * const setup = new BaseSimulationSetup(&manager, kSetup, 0);
  setup->SetName(L"Setup1");
  manager.AddSimulation(setup, nullptr);
  BaseSolution * const solution = setup->CreateSolution(kSolution, 0);
  solution->SetSolutionName(L"Sweep");
  setup->AddSolution(solution, nullptr);
  Require(manager.WriteDefinitionBlock() && setup->WriteDefinitionBlock(), "the definitions were not stored");
  SaveDefinition(manager, *solution);
  Check(manager.GetSolutionFileManager().CommitAll(false));
  for (std::size_t first = 0; first < design.blocks; first += kBatch)
    SolveBatch(manager, *solution, first, std::min(first + kBatch, design.blocks), design.payload);
  std::raise(SIGKILL);
  std::abort();
}

Recovered Recover(CrashedDesign const & design) {
  Recovered recovered;
  Stopwatch watch;
  watch.Start();
  // No design stands behind it, so it is told where the files are.
  BaseSolutionManager manager(LongFileName(text::FromUtf8(design.folder + "/none.qsol")));
  bool const isDone = manager.RecoverQsolFile(io::CBlock(L"Module"), Library(design).FilePath());
  watch.Stop();
  auto const & report = manager.GetRecoveryReport();
  Require(isDone && report.isCommitted && report.variations == design.blocks,
          "recovered " + std::to_string(report.variations) + " of " + std::to_string(design.blocks) + " blocks");
  Require(report.takenOver.size() == 1 && manager.HasDataBlock(SolutionVariationKey(kSetup, VariationOf(0), -1, -1)),
          "the recovered blocks are not found");
  recovered.seconds = watch.Seconds();
  recovered.blocks = report.blocks;
  return recovered;
}

double CopyAndSync(CrashedDesign const & design) {
  std::string const target = design.folder + "/copy";
  std::string buffer(256 * 1024, '\0');
  Stopwatch watch;
  watch.Start();
  int const from = ::open(PrivateFile(design).c_str(), O_RDONLY | O_CLOEXEC);
  int const to = ::open(target.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  Require(from >= 0 && to >= 0, "cannot open the files to copy");
  for (ssize_t got; (got = ::read(from, buffer.data(), buffer.size())) > 0;)
    Require(::write(to, buffer.data(), static_cast<std::size_t>(got)) == got, "cannot write the copy");
  Require(::fsync(to) == 0, "cannot sync the copy");
  watch.Stop();
  ::close(from);
  ::close(to);
  ::unlink(target.c_str());
  return watch.Seconds();
}

} // namespace bench
