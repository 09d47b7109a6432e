// What every delta state promises, whichever change it records: undo gives the state before, redo the state after, as
// often as one likes, and a delta that dies on either side of its change leaves nothing behind.

#include "basekit/command/CUndoableObjectDeltaState.h"
#include "basekit/command/KelvroCommand.h"
#include "plotkit/outputvariable/OutputVariable.h"
#include "solutionmanager/undo/CAllSolutionsDeltaState.h"
#include "solutionmanager/undo/COutputVariableMapDeltaState.h"
#include "solutionmanager/undo/CPreserveStateDeltaState_T.h"
#include "solutionmanager/undo/SolutionMapDeltaState.h"
#include "solutionmanager/undo/SolutionVariationMapDeltaState.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

/// Something of every kind that a delta state can change.  Two solutions are alive and one is deleted.
struct World {
  using Variations = SolutionVariationMapDeltaState::Map;
  using Variables = COutputVariableMapDeltaState::Map;

  World(BaseSolutionManager & ofDesign, BaseSimulationSetup & ofManager) : manager(ofDesign), setup(ofManager) {
    for (wchar_t const * const name : {L"B", L"C"})
      setup.AddSolution(setup.CreateSolution(name), nullptr);
    setup.DeleteSolution(setup.GetSolutions().rbegin()->first, nullptr);
    Enter(NewVariation(L"x=1"));
    variables.emplace(L"Gain", new OutputVariable(L"Gain"));
  }
  ~World() {
    for (Variations const * const map : {&variations, &deletedVariations})
      for (auto const & item : *map)
        delete item.second;
    for (auto const & item : variables)
      delete item.second;
  }
  BaseSolution & Solution() const { return *setup.GetSolutions().begin()->second; }
  BaseSolutionVariation * NewVariation(AString const & text) const {
    return new support::TestVariation(&Solution(), text, Solution().GetVersionID());
  }
  VariationIDIndex IndexOf(BaseSolutionVariation const * variation) const {
    return VariationIDIndex(variation->GetDesignVariationKey(), variation->GetVersionID(), &manager);
  }
  void Enter(BaseSolutionVariation * variation) { variations.emplace(IndexOf(variation), variation); }

  /// All of it, as text.
  std::string Look() const {
    std::ostringstream text;
    text << "manager " << manager.GetVersionID() << '\n';
    for (auto const * const setups : {&manager.GetSetups(), &manager.GetDeletedSetups(), &manager.GetImportedSetups()})
      Tell(text, *setups);
    for (auto const * const solutions : {&setup.GetSolutions(), &setup.GetDeletedSolutions()})
      Tell(text, *solutions);
    for (auto const * const map : {&variations, &deletedVariations}) {
      text << "variations";
      for (auto const & [index, variation] : *map)
        text << ' ' << index.GetVariationID() << '=' << variation;
    }
    text << "\nvariables";
    for (auto const & [name, variable] : variables)
      text << ' ' << testing::PrintToString(name) << '=' << variable << '/'
           << testing::PrintToString(variable->GetValueBaseText()) << '/' << variable->GetParameterType();
    return text.str();
  }

  BaseSolutionManager & manager;
  BaseSimulationSetup & setup;
  Variations variations;
  Variations deletedVariations;
  Variables variables;

private:
  template <class Map> static void Tell(std::ostream & text, Map const & map) {
    text << "objects";
    for (auto const & [id, object] : map)
      text << ' ' << id << '=' << static_cast<void const *>(object) << '/' << object->GetVersionID();
    text << '\n';
  }
};

// Each case makes its change in the world and returns the record of it.  Where a change adds an object, the first look
// comes after an undo, since the deleted map holds the object from then on.

constexpr long kNewState = 500;

template <class T> KelvroDeltaState * Preserve(std::initializer_list<T *> objects) {
  auto * delta = new CPreserveStateDeltaState_T<T, long>(kNewState);
  for (T * const object : objects)
    delta->Add(object);
  return delta;
}

struct VersionOfSolutions {
  static KelvroDeltaState * Change(World & world) {
    return Preserve({&world.Solution(), world.setup.GetDeletedSolutions().begin()->second});
  }
};

struct VersionOfASetup {
  static KelvroDeltaState * Change(World & world) { return Preserve({&world.setup}); }
};

struct VersionOfTheManager {
  static KelvroDeltaState * Change(World & world) { return Preserve({&world.manager}); }
};

struct VersionOfAllSolutions {
  static KelvroDeltaState * Change(World & world) {
    auto * delta = new CAllSolutionsDeltaState(&world.setup, kNewState);
    delta->Capture();
    return delta;
  }
};

/// A command that keeps one delta, handed out for the test to run by itself.
class Recorder : public KelvroDeltaState {
public:
  template <class Work> explicit Recorder(Work work) : KelvroDeltaState(true), m_command(L"Edit") { work(&m_command); }
  void UndoIt() override {
    KelvroDeltaState::UndoIt();
    m_command.Undo();
  }
  void RedoIt() override {
    KelvroDeltaState::RedoIt();
    m_command.Redo();
  }

private:
  KelvroCommand m_command;
};

struct AddedSolution {
  static KelvroDeltaState * Change(World & world) {
    return new Recorder(
        [&](KelvroCommand * command) { world.setup.AddSolution(world.setup.CreateSolution(L"New"), command); });
  }
};

struct DeletedSolution {
  static KelvroDeltaState * Change(World & world) {
    return new Recorder(
        [&](KelvroCommand * command) { world.setup.DeleteSolution(world.Solution().GetID(), command); });
  }
};

/// Of one ID there is a deleted solution already, whose place the second one takes.
struct DeletedSolutionOfATakenID {
  static KelvroDeltaState * Change(World & world) {
    long const id = world.setup.GetDeletedSolutions().begin()->first;
    world.setup.AddSolution(world.setup.CreateSolution(id, 0), nullptr);
    return new Recorder([&](KelvroCommand * command) { world.setup.DeleteSolution(id, command); });
  }
};

struct AddedSetup {
  static KelvroDeltaState * Change(World & world) {
    return new Recorder([&](KelvroCommand * command) {
      world.manager.AddSimulation(new support::TestSetup(&world.manager, L"New"), command);
    });
  }
};

struct DeletedSetup {
  static KelvroDeltaState * Change(World & world) {
    return new Recorder(
        [&](KelvroCommand * command) { world.manager.DeleteSimulationSetup(world.setup.GetID(), command); });
  }
};

struct AddedVariation {
  static KelvroDeltaState * Change(World & world) {
    auto * delta = new SolutionVariationMapDeltaState(&world.variations, &world.deletedVariations, true);
    BaseSolutionVariation * const variation = world.NewVariation(L"x=2");
    world.Enter(variation);
    delta->Record(variation, true);
    return delta;
  }
};

/// Solved, deleted, solved again, and that one is deleted, too.
struct DeletedVariationOfATakenIndex {
  static KelvroDeltaState * Change(World & world) {
    BaseSolutionVariation * const former = world.NewVariation(L"x=1");
    world.deletedVariations.emplace(world.IndexOf(former), former);
    auto * delta = new SolutionVariationMapDeltaState(&world.variations, &world.deletedVariations, false);
    delta->Record(world.variations.begin()->second, false);
    delta->RedoIt();
    return delta;
  }
};

struct AddedOutputVariable {
  static KelvroDeltaState * Change(World & world) {
    auto * delta = new COutputVariableMapDeltaState(&world.variables);
    auto * const variable = new OutputVariable(L"Phase");
    world.variables.emplace(L"Phase", variable);
    delta->Record(L"Phase", variable, true);
    return delta;
  }
};

struct DeletedOutputVariable {
  static KelvroDeltaState * Change(World & world) {
    auto * delta = new COutputVariableMapDeltaState(&world.variables);
    delta->Record(L"Gain", world.variables.at(L"Gain"), false);
    world.variables.erase(L"Gain");
    return delta;
  }
};

struct ReplacedOutputVariable {
  static KelvroDeltaState * Change(World & world) {
    auto * delta = new COutputVariableMapDeltaState(&world.variables);
    delta->Record(L"Gain", world.variables.at(L"Gain"), false);
    world.variables.erase(L"Gain");
    delta->Record(L"gain", world.variables.emplace(L"gain", new OutputVariable(L"gain")).first->second, true);
    return delta;
  }
};

/// One object under another key: it is removed and inserted, and belongs to the live map all the time.
struct RenamedOutputVariable {
  static KelvroDeltaState * Change(World & world) {
    auto * delta = new COutputVariableMapDeltaState(&world.variables);
    OutputVariable * const variable = world.variables.at(L"Gain");
    delta->Record(L"Gain", variable, false);
    delta->Record(L"Loss", variable, true);
    world.variables.erase(L"Gain");
    world.variables.emplace(L"Loss", variable);
    return delta;
  }
};

struct EditedOutputVariable {
  static KelvroDeltaState * Change(World & world) {
    OutputVariable * const variable = world.variables.at(L"Gain");
    auto * delta = new CUndoableObjectDeltaState(*variable);
    variable->SetValueBaseText(L"2", ValueState(Units::kNoUnits, Units::kNoUnitType, 1, val::kReal));
    return delta;
  }
};

} // namespace

template <class Case> class DeltaStateContract : public support::ModelTest {
protected:
  DeltaStateContract() : m_world(Manager(), AddSetup(L"Setup1", L"A")), m_delta(Case::Change(m_world)) {
    m_after = m_world.Look();
    m_delta->UndoIt();
    m_before = m_world.Look();
    m_delta->RedoIt();
  }

  World m_world;
  std::unique_ptr<KelvroDeltaState> m_delta;
  std::string m_before;
  std::string m_after;
};

using AllCases =
    testing::Types<VersionOfSolutions, VersionOfASetup, VersionOfTheManager, VersionOfAllSolutions, AddedSolution,
                   DeletedSolution, DeletedSolutionOfATakenID, AddedSetup, DeletedSetup, AddedVariation,
                   DeletedVariationOfATakenIndex, AddedOutputVariable, DeletedOutputVariable, ReplacedOutputVariable,
                   RenamedOutputVariable, EditedOutputVariable>;
TYPED_TEST_SUITE(DeltaStateContract, AllCases);

TYPED_TEST(DeltaStateContract, UndoGivesTheStateBeforeAndRedoTheStateAfterAsOftenAsOneLikes) {
  EXPECT_NE(this->m_before, this->m_after);
  EXPECT_EQ(this->m_world.Look(), this->m_after);
  for (int round = 0; round < 3; ++round) {
    this->m_delta->UndoIt();
    EXPECT_EQ(this->m_world.Look(), this->m_before);
    EXPECT_FALSE(this->m_delta->IsStateChangeDone());
    this->m_delta->RedoIt();
    EXPECT_EQ(this->m_world.Look(), this->m_after);
    EXPECT_TRUE(this->m_delta->IsStateChangeDone());
  }
}

// That nothing leaks and nothing is freed twice is what a sanitizer run tells of these two.
TYPED_TEST(DeltaStateContract, ADeltaThatDiesWhileItsChangeStandsLeavesTheState) {
  this->m_delta.reset();
  EXPECT_EQ(this->m_world.Look(), this->m_after);
}

TYPED_TEST(DeltaStateContract, ADeltaThatDiesUndoneLeavesTheStateBefore) {
  this->m_delta->UndoIt();
  this->m_delta.reset();
  EXPECT_EQ(this->m_world.Look(), this->m_before);
}

TYPED_TEST(DeltaStateContract, ADeltaIsEquivalentToItselfAlone) {
  CAllSolutionsDeltaState const other(nullptr, 0);
  EXPECT_TRUE(this->m_delta->IsEquivalent(*this->m_delta));
  EXPECT_FALSE(this->m_delta->IsEquivalent(other));
}
