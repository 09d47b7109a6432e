#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/DocumentText.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "apps/solvedesk/project/PointResults.h"
#include "apps/solvedesk/project/ProjectTree.h"
#include "apps/solvedesk/project/StaleReport.h"
#include "basekit/value/Variable.h"
#include "desktop/command/DesignState.h"
#include "desktop/design/Design.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/IResultReceiver.h"
#include "desktop/product/ImportedSetup.h"
#include "desktop/product/ImportedSolution.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Project.h"
#include "plotkit/sweep/SweepDefinition.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace solvedesk {
namespace {

using Json = nlohmann::ordered_json;

struct InfoWords {
  std::string project;
  bool why = false;
  bool files = false;
  OutputOptions output;
};

Json SweepJson(SweepDefinition const & sweep) {
  Json json{{"variable", Utf8(sweep.GetVariableName())},
            {"type", Utf8(SweepDefinition::GetSweepTypeName(sweep.GetType()))},
            {"start", sweep.GetStart()},
            {"stop", sweep.GetStop()}};
  if (sweep.GetType() == SweepDefinition::kLinearStep)
    json["step"] = sweep.GetStep();
  else if (sweep.GetCount() > 0)
    json["count"] = sweep.GetCount();
  return json;
}

std::string SweepText(SweepDefinition const & sweep) {
  std::string const name = Utf8(sweep.GetVariableName());
  switch (sweep.GetType()) {
  case SweepDefinition::kLinearStep:
    return fmt::format("{} from {} to {} in steps of {}", name, sweep.GetStart(), sweep.GetStop(), sweep.GetStep());
  case SweepDefinition::kLinearCount:
    return fmt::format("{} from {} to {}, {}", name, sweep.GetStart(), sweep.GetStop(),
                       Count(sweep.GetCount(), "point"));
  case SweepDefinition::kDecadeCount:
    return fmt::format("{} from {} to {}, {} a decade", name, sweep.GetStart(), sweep.GetStop(), sweep.GetCount());
  case SweepDefinition::kOctaveCount:
    return fmt::format("{} from {} to {}, {} an octave", name, sweep.GetStart(), sweep.GetStop(), sweep.GetCount());
  default:
    return fmt::format("{} from {} to {}", name, sweep.GetStart(), sweep.GetStop());
  }
}

char const * StateWord(VariationState const & state) {
  return state.isFormer ? "former" : state.isValid ? "valid" : "stale";
}

std::string StateText(VariationState const & state) {
  return fmt::format("{:<6}  {:<7}  {}", StateWord(state), state.hasData ? "data" : "no data",
                     !state.hasData     ? "-"
                     : !state.isUnsaved ? "saved"
                     : state.isSaved    ? "both"
                                        : "unsaved");
}

/// Goes through a project once and tells it, as text for people, as a document, or both.
class InfoReport {
public:
  InfoReport(desktop::Session & session, InfoWords const & words)
      : m_session(session), m_why(words.why), m_files(words.files), m_makesText(IsTextWanted(words.output)),
        m_makesDocument(IsDocumentWanted(words.output)), m_states(session) {}

  std::string const & Text() const { return m_text; }
  std::string TakeDocument() { return std::move(m_document).Take(); }

  void Make(std::string const & path) {
    m_text = fmt::format("{} ({}{}{})\n", path, Utf8(m_session.GetProduct().GetName()),
                         m_session.HasUnsavedChanges() ? ", unsaved changes" : "",
                         m_session.IsReadOnly() ? ", read only" : "");
    Json notices = Json::array();
    for (AString const & notice : m_session.GetNotices())
      notices.push_back(Utf8(notice));
    std::string const note = NoteOfSource(m_session);
    if (!note.empty())
      notices.push_back(note);
    m_document.Members({{"project", path},
                        {"product", Utf8(m_session.GetProduct().GetName())},
                        {"read_only", m_session.IsReadOnly()},
                        {"unsaved_changes", m_session.HasUnsavedChanges()},
                        {"notices", notices}});
    AddSource(!note.empty());
    AddDesign();
    m_document.BeginArray("setups");
    for (auto const & [id, setup] : m_session.GetManager().GetSetups())
      AddSetup(*setup);
    for (auto const & [id, setup] : m_session.GetManager().GetImportedSetups())
      AddImportedSetup(*setup);
    m_document.EndArray();
  }

private:
  void AddSource(bool hasChanged) {
    std::string const source = Utf8(m_session.GetProject().GetSourceFile().FilePath());
    std::string const library = Utf8(m_session.GetManager().GetQsolPath());
    std::string const known = KnownSource();
    m_text += fmt::format("  source {}{}{}\n  library {}\n", source, hasChanged ? " (not as it was read)" : "",
                          known == source ? "" : fmt::format(" (in place of {}, which is not there)", known), library);
    m_document.Members(
        {{"source", {{"path", source}, {"known_as", known}, {"changed", hasChanged}}}, {"library", library}});
  }

  // Where the project has it from, whether or not it is there.
  std::string KnownSource() const {
    desktop::Project const & project = m_session.GetProject();
    return project.GetSourceFiles().empty()
               ? std::string()
               : Utf8(project.GetSourceFiles().front().PathIn(project.GetFolder()).FilePath());
  }

  void AddDesign() {
    desktop::Design const & design = m_session.GetDesign();
    m_text += fmt::format("  design {}\n", Utf8(design.GetName()));
    Json variables = Json::array();
    for (Variable const * variable : design.GetVariables()) {
      m_text += fmt::format("    {} = {}\n", Utf8(variable->GetName()), Utf8(variable->GetValueText()));
      variables.push_back({{"name", Utf8(variable->GetName())}, {"value", Utf8(variable->GetValueText())}});
    }
    m_document.Value(
        "design",
        {{"name", Utf8(design.GetName())}, {"variation", Utf8(design.GetVariation())}, {"variables", variables}});
  }

  void AddSetup(BaseSimulationSetup const & setup) {
    std::vector<SweepDefinition *> sweeps;
    setup.GetSweepDefinitions(sweeps);
    m_text += fmt::format("  setup {}, {}\n", Utf8(setup.GetName()), Utf8(setup.GetSimSetupTypeName()));
    std::string const settings = Utf8(desktop::SettingsWords(m_session, setup));
    // The words tell what a sweep alone doesn't: whether it is adaptive, what else is kept.
    if (!settings.empty())
      m_text += fmt::format("    {}\n", settings);
    Json sweepList = Json::array();
    for (SweepDefinition const * sweep : sweeps) {
      m_text += fmt::format("    sweep {}\n", SweepText(*sweep));
      sweepList.push_back(SweepJson(*sweep));
    }
    m_document.BeginObject();
    m_document.Members({{"name", Utf8(setup.GetName())},
                        {"type", Utf8(setup.GetSimSetupTypeName())},
                        {"imported", false},
                        {"sweeps", sweepList},
                        {"settings", settings}});
    m_document.BeginArray("solutions");
    for (auto const & [id, solution] : setup.GetSolutions())
      AddSolution(*solution);
    m_document.EndArray();
    m_document.EndObject();
  }

  // What was measured is valid as long as it is there: no edit makes it stale.
  void AddImportedSetup(BaseSimulationSetup const & setup) {
    auto const * const imported = dynamic_cast<desktop::ImportedSetup const *>(&setup);
    desktop::ImportedSolution const * const solution = imported ? imported->GetImportedSolution() : nullptr;
    m_text += fmt::format("  setup {}, imported\n", Utf8(setup.GetName()));
    m_document.BeginObject();
    m_document.Members({{"name", Utf8(setup.GetName())},
                        {"type", Utf8(setup.GetSimSetupTypeName())},
                        {"imported", true},
                        {"file", solution ? Utf8(solution->GetFile()) : std::string()},
                        {"summary", solution ? Utf8(solution->GetSummary()) : std::string()},
                        {"sweeps", Json::array()},
                        {"settings", ""}});
    m_document.BeginArray("solutions");
    if (solution)
      AddImportedSolution(*solution);
    m_document.EndArray();
    m_document.EndObject();
  }

  void AddImportedSolution(desktop::ImportedSolution const & solution) {
    auto const variations = m_states.Of(solution);
    m_text += fmt::format("    {}, from {}\n    solution {}:\n", Utf8(solution.GetSummary()), Utf8(solution.GetFile()),
                          Utf8(solution.GetSolutionName()));
    m_document.BeginObject();
    m_document.Text("name", solution.GetSolutionName());
    m_document.BeginArray("variations");
    for (VariationState const & state : variations) {
      m_text += fmt::format("      {}\n", StateText(state));
      AddVariationMembers(state);
      m_document.EndObject();
    }
    m_document.EndArray();
    m_document.EndObject();
  }

  void AddSolution(BaseSolution const & solution) {
    auto const variations = m_states.Of(solution);
    SolutionCounts const counts = Count(variations);
    m_text +=
        fmt::format("    solution {}: {}, {} valid, {} with data, {} saved{}{}\n", Utf8(solution.GetSolutionName()),
                    Count(counts.all, "variation"), counts.valid, counts.withData, counts.saved,
                    counts.both > 0 ? fmt::format(" ({} with newer unsaved results)", counts.both) : std::string(),
                    counts.former > 0 ? ", " + Count(counts.former, "former version") : std::string());
    m_document.BeginObject();
    m_document.Text("name", solution.GetSolutionName());
    m_document.BeginArray("variations");
    StaleReport reasons(m_session, solution);
    for (VariationState const & state : variations)
      AddVariation(solution, state, reasons);
    m_document.EndArray();
    if (m_why) {
      m_text += reasons.Text();
      if (Json const point = reasons.PresentPoint(); !point.is_null())
        m_document.Value("present_point", point);
    }
    m_document.EndObject();
  }

  // There may be a hundred thousand of them.
  void AddVariation(BaseSolution const & solution, VariationState const & state, StaleReport & reasons) {
    Json const why = m_why && !state.isValid && !state.isFormer ? reasons.Why(*state.object) : Json();
    if (m_makesText)
      m_text += fmt::format("      {}  {}\n", StateText(state),
                            state.variation.empty() ? "(no variables)" : Utf8(state.variation));
    auto const results = m_files ? ResultsOf(solution, state) : std::vector<desktop::StoredResult>();
    if (m_makesText)
      m_text += TextOf(results, "        ");
    if (!m_makesDocument)
      return;
    AddVariationMembers(state);
    if (m_files)
      m_document.Value("results", JsonOf(results));
    if (!why.is_null())
      m_document.Value("why", why);
    m_document.EndObject();
  }

  // Of an object that stays open.
  void AddVariationMembers(VariationState const & state) {
    m_document.BeginObject();
    m_document.Text("variation", state.variation);
    m_document.Flag("valid", state.isValid);
    m_document.Flag("has_data", state.hasData);
    m_document.Flag("saved", state.isSaved);
    m_document.Flag("unsaved", state.isUnsaved);
    m_document.Flag("former", state.isFormer);
    m_document.Number("version", state.version);
  }

  desktop::Session & m_session;
  bool m_why;
  bool m_files;
  bool m_makesText;
  bool m_makesDocument;
  VariationStates m_states;
  std::string m_text;
  DocumentText m_document;
};

int ShowProject(InfoWords const & words) {
  auto const session = OpenForReading(words.project);
  InfoReport report(*session, words);
  report.Make(Utf8(ProjectPath(words.project)));
  PrintResult(words.output, report.Text(), report.TakeDocument());
  return 0;
}

} // namespace

void AddInfoVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<InfoWords>();
  CLI::App * const verb =
      program.add_subcommand("info", "show a project's variables, setups, solutions and variations");
  AddProjectWord(*verb, words->project);
  verb->add_flag("--why", words->why, "tell which edit made data stale, and what makes it valid again");
  verb->add_flag("--files", words->files,
                 "list the files and numbers that are kept beside the data of valid variations");
  AddOutputOptions(*verb, words->output);
  verb->footer(
      "Examples:\n  solvedesk info lowpass --json\n  solvedesk info lowpass --why\n\n"
      "A variation is valid while nothing changed since it was solved, stale when something did, saved once it is in\n"
      "the committed library, and both when what is saved has newer, unsaved results beside it; a former one is an "
      "older version of a point that was solved again.  While another "
      "process has the project, the state that was saved last is shown.");
  verb->callback([&action, words] { action = [words] { return ShowProject(*words); }; });
}

} // namespace solvedesk
