// Traces after an edit: which of them it reaches is found out from their expressions.
#include "bench/extraction/Synchronisation.h"

#include "basekit/command/KelvroCommand.h"
#include "basekit/command/PropertyCommandInfo.h"
#include "bench/support/Measure.h"
#include "bench/support/ReportRuns.h"
#include "bench/support/RunLoop.h"
#include "bench/support/SolvedWorld.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/trace/Trace.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/NameSpaceSetup.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <algorithm>

namespace bench {

namespace {

constexpr std::size_t kTracesOfAReport = 10;

AString TextOf(std::size_t trace) { return AString::Format(L"dB(S*%lu)", trace + 2); }

std::unique_ptr<KelvroCommand> EditOf(wchar_t const * variable, unsigned how) {
  auto command = std::make_unique<KelvroCommand>(L"Edit");
  auto info = std::make_unique<PropertyCommandInfo>();
  info->AddProperty(variable, PropertyCommandInfo::kVariableProp | how);
  command->SetInfo(KelvroCommandInfo::kDesignProperties, info.release());
  return command;
}

std::size_t CountDirty(BaseSimDataExtractor const & extractor) {
  std::list<Trace *> traces;
  extractor.GetAvailableTraces(traces);
  return static_cast<std::size_t>(
      std::count_if(traces.begin(), traces.end(), [](Trace const * trace) { return trace->IsDirty(); }));
}

void AddReports(SolvedWorld & world, std::size_t traces) {
  std::vector<ISolutionPointSet *> sets;
  SolutionPointSet * set = nullptr;
  for (std::size_t trace = 0; trace < traces; ++trace)
    if (trace % kTracesOfAReport == 0)
      sets.push_back(set = &world.AddReport(TextOf(trace)));
    else
      world.AddTrace(*set, TextOf(trace));
  world.Update(sets);
}

// What no synchronisation does without: each text once.
double SecondsOfAnalyses(SolvedWorld & world, std::size_t traces) {
  ValueParserSpan const parser(world.Extractor().GetIValueParser());
  return SecondsOf([&] {
    for (std::size_t trace = 0; trace <= traces; ++trace) {
      ISolutionMgr::ReportTypeMap reportTypes;
      std::vector<OutputVariable *> variables;
      BaseSolutionManager::SimValuesByReportType simValues;
      Require(world.Manager().GetQuantityTypeInfo(reportTypes, trace == traces ? AString(L"F") : TextOf(trace),
                                                  &variables, &simValues, nullptr),
              "a text can't be analysed");
    }
  });
}

} // namespace

SynchronisationCost MeasureSynchronisation(std::string const & folder, std::size_t traces, int repeats) {
  DataFolder const results(folder);
  SolvedWorld world(results.Path(), 2, 11);
  AddReports(world, traces);
  Require(CountDirty(world.Extractor()) == 0, "a trace was not updated");
  auto const swept = EditOf(L"C", PropertyCommandInfo::kEdited);
  SynchronisationCost cost;
  cost.texts = traces + 1;
  std::size_t const before = world.Analyses();
  world.Manager().SynchronizeTraces(swept.get());
  cost.analyses = world.Analyses() - before;
  auto const shortest =
      ShortestInTurns(repeats, {[&] { return SecondsOf([&] { world.Manager().SynchronizeTraces(swept.get()); }); },
                                [&] { return SecondsOfAnalyses(world, traces); }});
  Require(CountDirty(world.Extractor()) == 0, "an edit of a variable that is swept reached a trace");
  world.Manager().SynchronizeTraces(EditOf(L"C", PropertyCommandInfo::kDeleted).get());
  Require(CountDirty(world.Extractor()) == traces, "the deletion of a variable missed a trace");
  cost.seconds = shortest[0];
  cost.secondsOfAnalyses = shortest[1];
  return cost;
}

} // namespace bench
