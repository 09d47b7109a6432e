#include "apps/solvedesk/report/PageRecords.h"

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/results/ConvergenceTable.h"
#include "apps/solvedesk/results/ProfileReport.h"
#include "apps/solvedesk/results/RecordChoice.h"
#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/solve/SolveRecords.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>

namespace solvedesk {
namespace {

namespace page = desktop::page;
using Json = nlohmann::ordered_json;

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();
constexpr double kMegabyte = 1024.0 * 1024.0;

double NumberOf(Json const & json) { return json.is_number() ? json.get<double>() : kMissing; }

AString TextOf(Json const & json) { return json.is_string() ? text::FromUtf8(json.get<std::string>()) : AString(); }

/// What the passes of a set are measured by: its criterion, or else the first column that can be plotted.
std::string MeasureOf(Json const & set) {
  if (set["criterion"].is_string())
    return set["criterion"];
  for (Json const & column : set["columns"])
    if (column["plottable"] && column["name"] != "Pass")
      return column["name"];
  return std::string();
}

page::Convergence::Run RunOf(AString const & variation, Json const & set, std::string const & measure) {
  page::Convergence::Run run;
  run.variation = variation;
  for (Json const & pass : set["passes"]) {
    run.passes.push_back(static_cast<double>(run.passes.size() + 1));
    run.deltas.push_back(pass.contains(measure) ? NumberOf(pass[measure]) : kMissing);
  }
  if (set["target"].is_number())
    run.target = set["target"].get<double>();
  if (set["converged"].is_boolean())
    run.isConverged = set["converged"].get<bool>();
  return run;
}

page::Convergence & Find(std::vector<page::Convergence> & all, AString const & title, AString const & criterion) {
  auto at = std::find_if(all.begin(), all.end(), [&](page::Convergence const & other) {
    return other.title == title && other.criterion == criterion;
  });
  if (at == all.end())
    at = all.insert(at, {title, criterion, {}});
  return *at;
}

/// Sums by what they are of, in the order in which they came first.
class Costs {
public:
  void Add(AString const & task, double seconds, double processor, double bytes) {
    auto const [place, isNew] = m_places.try_emplace(std::wstring(task.View()), m_tasks.size());
    if (isNew) {
      m_tasks.push_back(task);
      m_numbers.push_back({});
    }
    auto & numbers = m_numbers[place->second];
    numbers[0] += seconds;
    numbers[1] += processor;
    numbers[2] = std::max(numbers[2], bytes / kMegabyte);
  }

  bool IsEmpty() const { return m_tasks.empty(); }

  page::Profile Profile(AString const & title, AString const & heading) const {
    page::Profile profile{
        title, m_tasks, {{L"wall", L"s", {}}, {L"processors", L"s", {}}, {L"most memory", L"MB", {}}}, heading};
    for (auto const & numbers : m_numbers)
      for (std::size_t i = 0; i < numbers.size(); ++i)
        profile.measures[i].values.push_back(numbers[i]);
    return profile;
  }

private:
  std::map<std::wstring, std::size_t> m_places;
  std::vector<AString> m_tasks;
  std::vector<std::array<double, 3>> m_numbers;
};

/// What one setup's solves cost.
struct CostsOfSetup {
  Costs variations;
  Costs tasks;

  void Add(AString const & variation, Json const & record) {
    Json const & total = record["total"];
    variations.Add(variation, total["wall_seconds"], total["cpu_seconds"], total["memory_bytes"]);
    for (Json const & group : record["groups"])
      for (Json const & task : group["tasks"])
        tasks.Add(TextOf(task["name"]), task["wall_seconds"], task["cpu_seconds"], task["memory_bytes"]);
  }
};

} // namespace

std::vector<page::Item> ConvergenceItems(desktop::Session & session, int & code) {
  std::vector<page::Convergence> all;
  int const read = ForEachRecord(session, {}, SolutionVariationKey::kConvDataKey, [&](RecordOfSolve const & solve) {
    ConvergenceData whole(solve.block.Name());
    if (whole.Read(solve.block, &session.GetManager()) != io::kNoError)
      return false;
    for (int const index : ConvergenceSets(solve.block)) {
      // Through the setup, which knows the labels that no block holds.
      auto const * const record = solve.setup.GetConvData(solve.variation, solve.setup.GetVersionID(), index);
      if (!record || record->NeedDefinition(index))
        continue;
      Json const set = ConvergenceJson(*record, index);
      std::string const measure = MeasureOf(set);
      AString const part = index == ConvergenceData::kSingleSet ? AString() : AString::Format(L" [%d]", index);
      Find(all, solve.setup.GetName(), text::FromUtf8(measure))
          .runs.push_back(RunOf(solve.variation + part, set, measure));
    }
    return true;
  });
  code = code == 0 ? read : code;
  return {all.begin(), all.end()};
}

std::vector<page::Item> ProfileItems(desktop::Session & session, int & code) {
  std::vector<std::pair<AString, CostsOfSetup>> all;
  int const read = ForEachRecord(session, {}, SolutionVariationKey::kProfileDataKey, [&](RecordOfSolve const & solve) {
    ProfileReport report(true);
    if (!report.Add(solve))
      return false;
    if (all.empty() || all.back().first != solve.setup.GetName())
      all.emplace_back(solve.setup.GetName(), CostsOfSetup());
    all.back().second.Add(solve.variation, report.Document()["records"][0]);
    return true;
  });
  code = code == 0 ? read : code;
  std::vector<page::Item> items;
  for (auto const & [setup, costs] : all) {
    items.push_back(costs.tasks.Profile(setup + L": tasks, over all variations", L"task"));
    items.push_back(costs.variations.Profile(setup + L": variations", L"variation"));
  }
  return items;
}

} // namespace solvedesk
