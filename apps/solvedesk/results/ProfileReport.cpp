#include "apps/solvedesk/results/ProfileReport.h"

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/TextTable.h"
#include "apps/solvedesk/results/RecordChoice.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/profile/CProfileData.h"
#include "basekit/profile/CProfileGroup.h"
#include "basekit/profile/CProfileTask.h"
#include "desktop/solve/SolveRecords.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

namespace solvedesk {
namespace {

using Json = nlohmann::ordered_json;

std::string SecondsText(double seconds) { return fmt::format("{:.3g} s", seconds); }

std::string MemoryText(double bytes) {
  if (bytes < 1024.0 * 1024.0)
    return fmt::format("{:.0f} kB", bytes / 1024);
  return fmt::format("{:.3g} MB", bytes / (1024 * 1024));
}

// The product's own indexes; a profile does not list them.
std::set<int> IndexesIn(io::CBlock const & block) {
  std::set<int> indexes;
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock> const group(child);
    int index = 0;
    if (!group)
      continue;
    *group >> io::named(L"Index", index);
    if (group->Found())
      indexes.insert(index);
  }
  return indexes;
}

Json TaskJson(CProfileTask const & task) {
  return {{"name", Utf8(task.GetName())},
          {"info", Utf8(task.GetInfo())},
          {"wall_seconds", task.GetRealTime()},
          {"cpu_seconds", task.GetCpuTime()},
          {"memory_bytes", static_cast<long long>(task.GetMemory())}};
}

Json GroupJson(int index, long id, CProfileGroup const & group) {
  Json json{{"index", index},
            {"id", id},
            {"start", Utf8(group.GetStartInfo())},
            {"end", Utf8(group.GetTotalInfo())},
            {"tasks", Json::array()}};
  for (auto const & task : group.GetTasks())
    json["tasks"].push_back(TaskJson(*task));
  return json;
}

std::string GroupText(CProfileGroup const & group) {
  TextTable table(1);
  table.Add({"task", "wall", "CPU", "memory"});
  for (auto const & task : group.GetTasks())
    table.Add({Utf8(task->GetName()) + (task->GetInfo().empty() ? "" : ": " + Utf8(task->GetInfo())),
               SecondsText(task->GetRealTime()), SecondsText(task->GetCpuTime()), MemoryText(task->GetMemory())});
  std::string const end = group.GetTotalInfo().empty() ? "without an end" : Utf8(group.GetTotalInfo());
  return fmt::format("  {}: {}\n{}", Utf8(group.GetStartInfo()), end, table.Text("    "));
}

} // namespace

void ProfileReport::Total::Add(Total const & other) {
  solves += other.solves;
  seconds += other.seconds;
  cpuSeconds += other.cpuSeconds;
  memory = std::max(memory, other.memory);
}

std::string ProfileReport::Total::Text() const {
  return fmt::format("{}, {}, {} CPU, {} at most", Count(solves, "solve"), SecondsText(seconds),
                     SecondsText(cpuSeconds), MemoryText(memory));
}

Json ProfileReport::Total::Json() const {
  return {{"solves", solves},
          {"wall_seconds", seconds},
          {"cpu_seconds", cpuSeconds},
          {"memory_bytes", static_cast<long long>(memory)}};
}

bool ProfileReport::Add(RecordOfSolve const & solve) {
  CProfileData const * const record = solve.setup.GetProfileData(solve.variation, solve.setup.GetVersionID());
  if (!record)
    return false;
  Json groups = Json::array();
  Total total;
  std::string text;
  for (int const index : IndexesIn(solve.block))
    if (CProfileData::GroupList const * const list = record->GetGroupList(index))
      for (auto const & [id, group] : *list) {
        groups.push_back(GroupJson(index, id, *group));
        text += GroupText(*group);
        if (CProfileTask const * const whole = desktop::SolveRecords::WholeOf(index, *group))
          total.Add({1, whole->GetRealTime(), whole->GetCpuTime(), whole->GetMemory()});
      }
  m_text += fmt::format("{} at {}: {}\n", Utf8(solve.setup.GetName()), Utf8(solve.variation), total.Text());
  if (!m_isBrief)
    m_text += text;
  m_total.Add(total);
  m_records.push_back({{"setup", Utf8(solve.setup.GetName())},
                       {"variation", Utf8(solve.variation)},
                       {"groups", groups},
                       {"total", total.Json()}});
  return true;
}

std::string ProfileReport::Text() const {
  return m_text + (m_records.empty() ? "no solve left a record of its cost\n" : "all: " + m_total.Text() + "\n");
}

Json ProfileReport::Document() const { return {{"records", m_records}, {"total", m_total.Json()}}; }

} // namespace solvedesk
