// Long runs of mixed edits with undo and redo, beside a plain model of the design that knows values only.

#include "basekit/command/KelvroCommand.h"
#include "plotkit/outputvariable/OutputVariable.h"
#include "solutionmanager/undo/COutputVariableMapDeltaState.h"
#include "solutionmanager/undo/CPreserveStateDeltaState_T.h"
#include "solutionmanager/undo/SolutionVariationMapDeltaState.h"
#include "tests/solutionmanager/support/TestProduct.h"

#include <deque>
#include <gtest/gtest.h>
#include <random>

namespace {

constexpr int kSequences = 1000;
constexpr int kSteps = 30;

/// What the design is to look like, without pointers.  Every object bears a name of its own, so that two objects that
/// had one ID after the other are told apart.
struct PlainSetup {
  AString name;
  long version = 0;
  std::map<long, std::pair<AString, long>> solutions;
  bool operator==(PlainSetup const &) const = default;
};
struct PlainDesign {
  long version = 0;
  std::map<long, PlainSetup> setups;
  std::map<AString, AString> variables;
  std::map<AString, long> variations;
  bool operator==(PlainDesign const &) const = default;
};

/// The real design, and each edit made on both.
class Editor {
public:
  explicit Editor(BaseSolutionManager & manager)
      : m_manager(manager), m_home(new support::TestSetup(&manager, 100, 0)),
        m_homeSolution(m_home->CreateSolution(101, 0)) {
    for (AString const & text : kTexts)
      m_manager.AddVariationID(text, ++m_serial);
  }
  ~Editor() {
    for (auto const * const map : {&m_variations, &m_deletedVariations})
      for (auto const & item : *map)
        delete item.second;
    for (auto const & item : m_variables)
      delete item.second;
    delete m_homeSolution;
    delete m_home;
  }

  void Edit(std::mt19937 & random, KelvroCommand & command, PlainDesign & plain) {
    using Kind = void (Editor::*)(long, KelvroCommand &, PlainDesign &);
    static constexpr Kind kKinds[] = {&Editor::ToggleSetup,     &Editor::ToggleSolution,   &Editor::ToggleVariable,
                                      &Editor::ToggleVariation, &Editor::VersionOfManager, &Editor::VersionOfSetup,
                                      &Editor::AllSolutions,    &Editor::VersionOfSolution};
    (this->*kKinds[random() % std::size(kKinds)])(1 + static_cast<long>(random() % 3), command, plain);
  }

  PlainDesign Look() const {
    PlainDesign plain;
    plain.version = m_manager.GetVersionID();
    for (auto const & [id, setup] : m_manager.GetSetups()) {
      PlainSetup & entry = plain.setups[id];
      entry = {setup->GetName(), setup->GetVersionID(), {}};
      for (auto const & [solutionID, solution] : setup->GetSolutions())
        entry.solutions[solutionID] = {solution->GetSolutionName(), solution->GetVersionID()};
    }
    for (auto const & [name, variable] : m_variables)
      plain.variables[name] = variable->GetName();
    for (auto const & [index, variation] : m_variations)
      plain.variations[index.GetVariation()] =
          static_cast<long>(static_cast<support::TestVariation const *>(variation)->values.front());
    return plain;
  }

private:
  AString NewName() { return AString::Format(L"Object%d", static_cast<int>(++m_serial)); }

  BaseSimulationSetup * Setup(long id) const {
    auto const at = m_manager.GetSetups().find(id);
    return at == m_manager.GetSetups().end() ? nullptr : at->second;
  }

  void ToggleSetup(long id, KelvroCommand & command, PlainDesign & plain) {
    if (Setup(id)) {
      m_manager.DeleteSimulationSetup(id, &command);
      plain.setups.erase(id);
      return;
    }
    auto * const setup = new support::TestSetup(&m_manager, id, 0);
    setup->SetName(NewName());
    m_manager.AddSimulation(setup, &command);
    plain.setups[id] = {setup->GetName(), 0, {}};
  }

  void ToggleSolution(long id, KelvroCommand & command, PlainDesign & plain) {
    if (plain.setups.empty())
      return;
    auto & [setupID, entry] = *plain.setups.begin();
    BaseSimulationSetup & setup = *Setup(setupID);
    if (entry.solutions.erase(id)) {
      setup.DeleteSolution(id, &command);
      return;
    }
    BaseSolution * const solution = setup.CreateSolution(id, 0);
    solution->SetSolutionName(NewName());
    setup.AddSolution(solution, &command);
    entry.solutions[id] = {solution->GetSolutionName(), 0};
  }

  void ToggleVariable(long number, KelvroCommand & command, PlainDesign & plain) {
    AString const name = AString::Format(L"v%d", static_cast<int>(number));
    auto * const delta = new COutputVariableMapDeltaState(&m_variables);
    if (auto const at = m_variables.find(name); at != m_variables.end()) {
      delta->Record(name, at->second, false);
      m_variables.erase(at);
      plain.variables.erase(name);
    } else {
      auto * const variable = new OutputVariable(NewName());
      delta->Record(name, variable, true);
      m_variables.emplace(name, variable);
      plain.variables[name] = variable->GetName();
    }
    command.AddDeltaState(delta);
  }

  void ToggleVariation(long number, KelvroCommand & command, PlainDesign & plain) {
    AString const & text = kTexts[static_cast<std::size_t>(number - 1)];
    // The record itself makes the change.
    auto * const delta = new SolutionVariationMapDeltaState(&m_variations, &m_deletedVariations, false);
    auto const at = m_variations.find(VariationIDIndex(text, 0, &m_manager));
    if (at != m_variations.end()) {
      delta->Record(at->second, false);
      plain.variations.erase(text);
    } else {
      auto * const variation = new support::TestVariation(m_homeSolution, text, 0);
      variation->values = {static_cast<double>(++m_serial)};
      delta->Record(variation, true);
      plain.variations[text] = m_serial;
    }
    delta->RedoIt();
    command.AddDeltaState(delta);
  }

  void VersionOfManager(long, KelvroCommand & command, PlainDesign & plain) {
    auto * const delta = new CPreserveStateDeltaState_T<BaseSolutionManager, long>(++m_serial);
    delta->Add(&m_manager);
    command.AddDeltaState(delta);
    plain.version = m_serial;
  }

  void VersionOfSetup(long id, KelvroCommand & command, PlainDesign & plain) {
    if (BaseSimulationSetup * const setup = Setup(id)) {
      setup->Invalidate(&command, ++m_serial, kInvalidateSetups);
      plain.setups[id].version = m_serial;
    }
  }

  void AllSolutions(long id, KelvroCommand & command, PlainDesign & plain) {
    BaseSimulationSetup * const setup = Setup(id);
    if (!setup)
      return;
    setup->Invalidate(&command, ++m_serial, kInvalidateSolutions);
    for (auto & [solutionID, entry] : plain.setups[id].solutions)
      entry.second = m_serial;
  }

  void VersionOfSolution(long id, KelvroCommand & command, PlainDesign & plain) {
    for (auto & [setupID, entry] : plain.setups) {
      auto const at = entry.solutions.find(id);
      if (at == entry.solutions.end())
        continue;
      Setup(setupID)->GetSolutions().at(id)->Invalidate(&command, ++m_serial);
      at->second.second = m_serial;
      return;
    }
  }

  inline static AString const kTexts[] = {L"x=1", L"x=2", L"x=3"};

  BaseSolutionManager & m_manager;
  /// Of the variations alone.
  BaseSimulationSetup * m_home;
  BaseSolution * m_homeSolution;
  COutputVariableMapDeltaState::Map m_variables;
  SolutionVariationMapDeltaState::Map m_variations;
  SolutionVariationMapDeltaState::Map m_deletedVariations;
  long m_serial = 1000;
};

/// Undo and redo as a desktop has them: a new edit drops what was undone, and the oldest edit goes when there are many.
class History {
public:
  void Run(Editor & editor, std::mt19937 & random) {
    m_states.push_back(editor.Look());
    for (int step = 0; step < kSteps; ++step) {
      unsigned const choice = random() % 10;
      if (choice < 5)
        Do(editor, random);
      else if (choice < 8)
        Undo();
      else
        Redo();
      ASSERT_EQ(editor.Look(), m_states[m_done]) << "step " << step;
    }
  }

private:
  void Do(Editor & editor, std::mt19937 & random) {
    m_commands.resize(m_done);
    m_states.resize(m_done + 1);
    auto command = std::make_unique<KelvroCommand>(L"Edit");
    PlainDesign plain = m_states.back();
    for (unsigned edits = 1 + random() % 3; edits > 0; --edits)
      editor.Edit(random, *command, plain);
    m_commands.push_back(std::move(command));
    m_states.push_back(plain);
    ++m_done;
    if (m_commands.size() > 8) {
      m_commands.pop_front();
      m_states.pop_front();
      --m_done;
    }
  }
  void Undo() {
    if (m_done > 0)
      m_commands[--m_done]->Undo();
  }
  void Redo() {
    if (m_done < m_commands.size())
      m_commands[m_done++]->Redo();
  }

  std::deque<std::unique_ptr<KelvroCommand>> m_commands;
  std::deque<PlainDesign> m_states;
  std::size_t m_done = 0;
};

} // namespace

class RandomCommands : public support::ModelTest {};

TEST_F(RandomCommands, AnyMixtureOfEditsUndoneAndRedoneIsWhatAPlainModelSays) {
  for (unsigned seed = 0; seed < kSequences && !HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    support::TestManager manager(&m_design);
    Editor editor(manager);
    History history;
    history.Run(editor, random);
  }
}

// Maps and objects go first here; that no record touches them any more is what a sanitizer run tells.
TEST_F(RandomCommands, ARecordThatOutlivesTheDesignLeavesItAlone) {
  for (unsigned seed = 0; seed < 50; ++seed) {
    std::mt19937 random(seed);
    History history;
    support::TestManager manager(&m_design);
    Editor editor(manager);
    history.Run(editor, random);
  }
}
