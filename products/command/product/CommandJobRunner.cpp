#include "products/command/product/CommandJobRunner.h"

#include "basekit/profile/CProfileUpdate.h"
#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/variation/VariationText.h"
#include "products/command/process/ProgramRun.h"
#include "products/command/product/CommandSetup.h"
#include "products/command/product/QuantityBlock.h"
#include "products/command/product/SettingsBlock.h"
#include "products/command/source/SolverFile.h"
#include "products/command/source/SourceError.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

namespace command {
namespace {

namespace fs = std::filesystem;

/// Tells whether a file is the one that was read.
struct FileStamp {
  fs::path path;
  fs::file_time_type time;
  std::uintmax_t size = 0;

  explicit FileStamp(fs::path const & file) : path(file) {
    std::error_code ignored; // a file that is gone differs from one that was read
    time = fs::last_write_time(file, ignored);
    size = fs::file_size(file, ignored);
  }
  bool IsCurrent() const {
    FileStamp const now(path);
    return now.time == time && now.size == size;
  }
};

bool IsVariable(SolverFile const & file, std::string const & name) {
  return std::any_of(file.variables.begin(), file.variables.end(),
                     [&](DesignVariable const & variable) { return text::EqualNoCase(variable.name, name); });
}

void EnterVariables(SolverFile const & file, AString const & variation, HoleValues & values) {
  VariationText const pairs(variation);
  if (pairs.IsOpaque())
    throw SourceError("variation '" + text::ToUtf8(variation) +
                      "' can't be read; write name=value pairs, joined by ';'");
  for (VariationText::Pair const & pair : pairs.Pairs()) {
    std::string const name = text::ToUtf8(pair.name);
    if (!IsVariable(file, name))
      throw SourceError("design variable '" + name + "': " + file.path + " does not know it; add 'variable " + name +
                        " = NUMBER' there, or remove it here");
    if (!pair.isNumber || pair.number.imag() != 0.0)
      throw SourceError("design variable '" + name + "': its value '" + text::ToUtf8(pair.text) +
                        "' is not a real number; give a number");
    values.emplace_back(name, text::ShortestReal(pair.number.real()));
  }
  for (DesignVariable const & variable : file.variables)
    if (!FindValue(values, variable.name))
      throw SourceError("variable " + variable.name + ": has no value at this point; add it by 'solvedesk set --add " +
                        variable.name + "=NUMBER'");
}

void EnterSettings(SolverFile const & file, HoleValues const & settings, HoleValues & values) {
  for (auto const & [name, text] : settings) {
    if (!FindValue(file.settings, name))
      throw SourceError("setting '" + name + "': " + file.path + " does not know it; add 'setting " + name +
                        " = TEXT' there, or edit the setup");
    values.emplace_back(name, text);
  }
  for (auto const & [name, text] : file.settings)
    if (!FindValue(settings, name))
      values.emplace_back(name, text);
}

/// Tells what a run cost, whether it came to a good end or not.
class CostsOfRun {
public:
  CostsOfRun(SolverFile const & file, desktop::IJobProgress & progress) : m_file(file), m_progress(progress) {}
  CostsOfRun(CostsOfRun const &) = delete;
  CostsOfRun & operator=(CostsOfRun const &) = delete;
  ~CostsOfRun() {
    if (costs.seconds <= 0.0)
      return;
    std::string const program = m_file.usesShell ? "sh" : fs::path(m_file.words.front().Text()).filename().string();
    CProfileTask task(text::FromUtf8(program), AString());
    task.SetCost(costs.seconds, costs.cpuSeconds, costs.peakBytes);
    m_progress.ReportProfile(CProfileUpdate(CProfileUpdate::kTask, task), kOneSet);
  }

  RunCosts costs;

private:
  static constexpr int kOneSet = -1;

  SolverFile const & m_file;
  desktop::IJobProgress & m_progress;
};

std::vector<desktop::QuantityValues> RunOnce(SolverFile const & file, HoleValues const & values,
                                             desktop::IJobProgress & progress) {
  CostsOfRun run(file, progress);
  auto quantities = RunProgram(file, values, run.costs);
  if (AString const problem = ProblemOfQuantities(quantities); !problem.empty())
    throw SourceError(text::ToUtf8(problem));
  return quantities;
}

} // namespace

class CommandJobRunner::SolverFileCache {
public:
  SolverFile const & Get(AString const & path) {
    bool const isCurrent =
        m_file && path == m_path &&
        std::all_of(m_stamps.begin(), m_stamps.end(), [](FileStamp const & stamp) { return stamp.IsCurrent(); });
    if (!isCurrent)
      Read(path);
    return *m_file;
  }

private:
  void Read(AString const & path) {
    m_file.reset();
    m_stamps.clear();
    m_file = ReadSolverFile(text::ToUtf8(path));
    m_path = path;
    m_stamps.emplace_back(m_file->path);
    for (InputFile const & input : m_file->inputs)
      m_stamps.emplace_back(input.path);
  }

  AString m_path;
  std::optional<SolverFile> m_file;
  std::vector<FileStamp> m_stamps;
};

CommandJobRunner::CommandJobRunner() : m_files(std::make_unique<SolverFileCache>()) {}

CommandJobRunner::~CommandJobRunner() = default;

bool CommandJobRunner::Run(desktop::SolveJob const & job, io::CBlock & result, AString & error,
                           desktop::IJobProgress & progress) {
  try {
    if (job.setupType != CommandSetup::kTypeName)
      throw SourceError("setup '" + text::ToUtf8(job.setupName) + "': its type '" + text::ToUtf8(job.setupType) +
                        "' is not known here; use " + text::ToUtf8(CommandSetup::kTypeName));
    SolverFile const & file = m_files->Get(job.sourceFile);
    HoleValues values;
    EnterVariables(file, job.variation, values);
    EnterSettings(file, ReadSettings(job.settings), values);
    progress.Report(0.0, L"the program runs");
    WriteQuantities(RunOnce(file, values, progress), result);
    return true;
  } catch (SourceError const & refused) {
    error = text::FromUtf8(refused.what());
    return false;
  }
}

} // namespace command
