#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/console/WordList.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "apps/solvedesk/report/ReportView.h"
#include "desktop/Error.h"

#include <CLI/CLI.hpp>

namespace solvedesk {
namespace {

using desktop::ErrorKind;

struct EvalWords {
  std::string project;
  std::string expression;
  std::optional<std::string> solution;
  std::optional<std::string> variation;
  std::vector<std::string> over;
  ViewOptions view;
};

// "Setup : Solution", as `info` shows it, or a setup's name.
void SetSolution(AString const & text, desktop::ReportDefinition & question) {
  std::size_t const colon = text.find(L':');
  question.setup = text.substr(0, colon).Trimmed();
  if (colon != AString::npos)
    question.solution = text.substr(colon + 1).Trimmed();
  if (question.setup.empty())
    throw desktop::Error(ErrorKind::kUsage,
                         L"--solution '" + text + L"': names no setup; write it as \"SETUP : SOLUTION\", or the setup");
}

int Evaluate(EvalWords const & words) {
  desktop::ReportDefinition question;
  question.y = {ArgumentText(words.expression).Trimmed()};
  if (question.y.front().empty())
    throw desktop::Error(ErrorKind::kUsage, L"eval: the expression is empty; give one such as \"dB(S(2,1))\"");
  if (words.solution)
    SetSolution(ArgumentText(*words.solution), question);
  if (words.variation)
    question.variation = ArgumentText(*words.variation).Trimmed();
  question.over = WordList(words.over, L"--over");
  auto const session = OpenForReading(words.project);
  NoteOfSource(*session);
  /// What is asked once is not kept.
  struct Question {
    ~Question() { reports.Forget(definition); }
    desktop::LiveReports & reports;
    desktop::ReportDefinition const & definition;
  } const asked{session->GetLiveReports(), question};
  PrintReport(question, asked.reports.Evaluate(question), words.project, words.view);
  return 0;
}

} // namespace

void AddEvalVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<EvalWords>();
  CLI::App * const verb = program.add_subcommand("eval", "the value of an expression or output variable");
  AddProjectWord(*verb, words->project);
  verb->add_option("EXPRESSION", words->expression, "quantities, output variables, functions of them")->required();
  verb->add_option("--solution", words->solution,
                   "whose data: \"SETUP : SOLUTION\", or the setup; the first without it");
  verb->add_option("--variation", words->variation,
                   "values of variables, as in \"cscale=0.95; Freq=1GHz\"; the design's own for those not named");
  verb->add_option("--over", words->over, "design variables, with commas: a row for each solved value of them")
      ->allow_extra_args(false);
  AddViewOptions(*verb, words->view);
  verb->footer("Examples:\n"
               "  solvedesk eval lowpass \"max(dB(S(1,1)))\"\n"
               "  solvedesk eval lowpass \"dB(S(2,1))\" --variation \"Freq=1GHz\" --over cscale,lscale\n"
               "  solvedesk eval lowpass gain --csv gain.csv\n\n"
               "What is one number for a variation gives one row; what runs over samples gives a row for each.");
  verb->callback([&action, words] { action = [words] { return Evaluate(*words); }; });
}

} // namespace solvedesk
