#include "bench/model/Operations.h"

#include "basekit/command/KelvroCommand.h"
#include "basekit/profile/CProfileUpdate.h"
#include "bench/support/Measure.h"
#include "solutionmanager/address/VariationIDIndex.h"
#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/ConvValue.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "solutionmanager/convergence/SetupConvDef.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

namespace bench {

namespace {

/// Keeps the compiler from leaving out what nobody looks at.
template <class T> void Use(T const & value) { asm volatile("" : : "r"(&value) : "memory"); }

void AddIDs(std::vector<Operation> & operations, Model & model) {
  BaseSolutionManager const & manager = model.Manager();
  auto const & texts = model.Texts();
  operations.push_back({"id_known", [&](std::size_t i) { Use(manager.GetVariationID(texts[i])); }});
  operations.push_back({"id_copied_text", [&](std::size_t i) { Use(manager.GetVariationID(Model::Text(i))); }});
  operations.push_back(
      {"id_written_differently", [&](std::size_t i) { Use(manager.GetVariationID(Model::WrittenDifferently(i))); }});
  operations.push_back(
      {"id_new",
       [&, next = texts.size() + 1000](std::size_t) mutable { Use(manager.GetVariationID(Model::Text(next++))); }, 1,
       true});
  operations.push_back({"text_of_id", [&](std::size_t i) { Use(manager.GetVariationFromID(static_cast<long>(i))); }});
}

void AddLookUps(std::vector<Operation> & operations, Model & model) {
  BaseSolution & solution = model.Solution();
  auto const & texts = model.Texts();
  long const solved = model.SolvedVersion();
  auto const add = [&](std::string const & name, auto call) {
    operations.push_back({name, [call](std::size_t i) { Use(call(i)); }});
  };
  add("variation_exact", [&, solved](std::size_t i) { return solution.GetBaseSolutionVariation(texts[i], solved); });
  add("variation_best", [&](std::size_t i) { return solution.GetBaseSolutionVariation(texts[i], -1); });
  add("variation_absent",
      [&](std::size_t i) { return solution.GetBaseSolutionVariation(Model::WrittenDifferently(i), -1); });
  add("variation_by_key", [&, solved](std::size_t i) {
    return solution.GetBaseSolutionVariation(SolutionVariationKey(1, texts[i], 2, solved));
  });
  add("variation_ensure", [&, solved](std::size_t i) { return solution.EnsureVariation(texts[i], solved); });
  add("has_data", [&, solved](std::size_t i) { return solution.HasSolutionData(texts[i], solved); });
  add("has_data_any", [&](std::size_t i) { return solution.HasSolutionData(texts[i], -1); });
  add("has_loaded_any", [&](std::size_t i) { return solution.HasLoadedSolutionData(texts[i], -1); });
  add("has_valid", [&](std::size_t i) { return solution.HasValidSolutionData(texts[i], -1); });
  add("needs_to_simulate", [&](std::size_t i) { return solution.NeedsToSimulate(texts[i], -1); });
}

void AddWholeQuestions(std::vector<Operation> & operations, Model & model) {
  BaseSolution & solution = model.Solution();
  std::size_t const n = model.Texts().size();
  auto const add = [&](std::string const & name, auto call) {
    operations.push_back({name, [call](std::size_t) { Use(call()); }, n, true});
  };
  add("all_closest_version", [&] { return solution.GetClosestVersionWithData(); });
  add("all_has_data", [&] { return solution.HasSolutionData(static_cast<IDesignInstance const *>(nullptr), -1); });
  add("all_has_valid", [&] { return solution.HasValidVariation(-1); });
  add("all_are_valid", [&] { return solution.AreAllVariationsValid(); });
  add("all_texts", [&] {
    std::list<AString> texts;
    solution.GetAvailableVariations(texts, -1);
    return texts.size();
  });
  add("all_variations", [&] {
    std::vector<BaseSolutionVariation *> variations;
    solution.GetAvailableVariations(variations, -1);
    return variations.size();
  });
  add("all_listed", [&] {
    std::list<AString> valid, invalid;
    solution.ListCurrentVariations(valid, invalid);
    return valid.size();
  });
}

void AddChanges(std::vector<Operation> & operations, Model & model) {
  BaseSolution & solution = model.Solution();
  operations.push_back({"edit_undo_redo", [&](std::size_t) {
                          KelvroCommand command(L"Edit");
                          solution.Invalidate(&command, 2000000000);
                          command.Undo();
                          command.Redo();
                          command.Undo();
                        }});
  operations.push_back({"edit_all_undo",
                        [&](std::size_t) {
                          KelvroCommand command(L"Edit");
                          model.Manager().Invalidate(&command, 7);
                          command.Undo();
                        },
                        1, true});
}

constexpr int kPasses = 8;

/// What a solve leaves beside its data, under a version of its own each time: passes, costs, both written, then let go.
void RecordSolve(BaseSimulationSetup & setup, SetupConvDef const & list, AString const & variation, long version) {
  int const set = ConvergenceData::kSingleSet;
  setup.CreateConvData(variation, version, &list, set);
  setup.InitConvData(variation, version, L"8", L"0.01", L"Delta", L"Pass", L"2", L"Passes", set);
  for (int pass = 1; pass <= kPasses; ++pass) {
    ConvValues row;
    for (ConvDef const * def : list)
      row.AddValue(new DoubleConvValue(def, 1.0 / pass));
    setup.AddConvValues(variation, version, &row, set);
  }
  setup.WriteConvergenceDataBlock(variation, version);
  CProfileTask const task(L"Solve", L"8 passes");
  for (int const kind : {CProfileUpdate::kStartGroup, CProfileUpdate::kTask, CProfileUpdate::kStopGroup})
    setup.ProfileUpdate(variation, version, CProfileUpdate(kind, task, L"done"), set, nullptr);
  Require(setup.WriteProfileDataBlock(variation, version), "the library can't be written");
  setup.ForgetRecords(variation, version);
}

void AddRecords(std::vector<Operation> & operations, Model & model) {
  auto & setup = const_cast<BaseSimulationSetup &>(model.Solution().GetBaseSimulationSetup());
  auto const & texts = model.Texts();
  static long s_version = 1000000000;
  operations.push_back(
      {"record_solve", [&](std::size_t i) { RecordSolve(setup, model.Columns(), texts[i], ++s_version); }, 1, true});
  operations.push_back({"record_absent", [&](std::size_t i) { Use(setup.GetProfileData(texts[i], -1)); }});
  RecordSolve(setup, model.Columns(), texts[0], s_version);
  operations.push_back({"record_read",
                        [&, at = s_version](std::size_t) {
                          Require(setup.GetConvData(texts[0], at, ConvergenceData::kSingleSet) &&
                                      setup.GetProfileData(texts[0], at),
                                  "a record is lost");
                          setup.ForgetRecords(texts[0], at);
                        },
                        1, true});
}

} // namespace

std::vector<Operation> AllOperations(Model & model) {
  std::vector<Operation> operations;
  AddIDs(operations, model);
  AddLookUps(operations, model);
  AddWholeQuestions(operations, model);
  AddChanges(operations, model);
  AddRecords(operations, model);
  return operations;
}

} // namespace bench
