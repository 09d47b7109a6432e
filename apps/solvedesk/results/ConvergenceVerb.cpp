#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "apps/solvedesk/results/ConvergenceTable.h"
#include "apps/solvedesk/results/RecordChoice.h"
#include "basekit/io/CBlock.h"
#include "desktop/product/ProductSolutionManager.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace solvedesk {
namespace {

using Json = nlohmann::ordered_json;

struct ConvergenceWords {
  RecordWords records;
  bool brief = false;
  OutputOptions output;
};

/// All records that were visited, as text and as a document.
class ConvergenceReport {
public:
  explicit ConvergenceReport(bool isBrief) : m_isBrief(isBrief) {}

  bool Add(RecordOfSolve const & solve) {
    Json sets = Json::array();
    for (int const index : ConvergenceSets(solve.block)) {
      // Through the setup, which knows the labels that no block holds.
      ConvergenceData const * const record =
          solve.setup.GetConvData(solve.variation, solve.setup.GetVersionID(), index);
      if (!record || record->NeedDefinition(index))
        continue;
      std::string const set = index == ConvergenceData::kSingleSet ? "" : fmt::format(" [{}]", index);
      m_text += fmt::format("{} at {}{}: {}\n", Utf8(solve.setup.GetName()), Utf8(solve.variation), set,
                            ConvergenceSummary(*record, index));
      if (!m_isBrief)
        m_text += ConvergenceTable(*record, index);
      sets.push_back(ConvergenceJson(*record, index));
      m_converged += record->SupportsIsConverged(index) && record->GetIsConverged(index) ? 1 : 0;
      m_notConverged += record->SupportsIsConverged(index) && !record->GetIsConverged(index) ? 1 : 0;
    }
    m_records.push_back({{"setup", Utf8(solve.setup.GetName())}, {"variation", Utf8(solve.variation)}, {"sets", sets}});
    return true;
  }
  std::string Text() const {
    return m_text + (m_records.empty() ? "no solve reported passes\n"
                                       : fmt::format("{}: {} converged, {} not\n",
                                                     Count(static_cast<long long>(m_records.size()), "record"),
                                                     m_converged, m_notConverged));
  }
  Json Document() const {
    return {{"records", m_records}, {"converged", m_converged}, {"not_converged", m_notConverged}};
  }

private:
  bool m_isBrief;
  std::string m_text;
  Json m_records = Json::array();
  int m_converged = 0;
  int m_notConverged = 0;
};

int ShowConvergence(ConvergenceWords const & words) {
  auto const session = OpenForReading(words.records.project);
  ConvergenceReport report(words.brief);
  int const code =
      ForEachRecord(*session, words.records, SolutionVariationKey::kConvDataKey, [&](RecordOfSolve const & solve) {
        // The setup would give what it could read of a damaged one.
        ConvergenceData whole(solve.block.Name());
        return whole.Read(solve.block, &session->GetManager()) == io::kNoError && report.Add(solve);
      });
  PrintResult(words.output, report.Text(), report.Document());
  return code;
}

} // namespace

void AddConvergenceVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<ConvergenceWords>();
  CLI::App * const verb = program.add_subcommand("convergence", "show the passes of adaptive solves");
  AddRecordWords(*verb, words->records);
  verb->add_flag("--brief", words->brief, "one line for each solve, without its passes");
  AddOutputOptions(*verb, words->output);
  verb->footer("Examples:\n"
               "  solvedesk convergence lowpass\n"
               "  solvedesk convergence lowpass --variation \"cscale=1; lscale=1\" --json\n\n"
               "Shows, for each variation, the passes of its last solve at the setup's present settings: what the\n"
               "solver measured, the target, and whether it was met. Failed solves are shown too.");
  verb->callback([&action, words] { action = [words] { return ShowConvergence(*words); }; });
}

} // namespace solvedesk
