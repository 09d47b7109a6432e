// The statements of a solver file, line by line.

#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/units/Units.h"
#include "products/command/source/LineWords.h"
#include "products/command/source/SolverFile.h"
#include "products/command/source/SolverFileCheck.h"
#include "products/command/source/SourceError.h"

#include <cmath>
#include <filesystem>
#include <sstream>

namespace command {
namespace {

namespace fs = std::filesystem;

constexpr double kMostBytes = 1e11;

/// The words of one statement, taken from front to back.
class Statement {
public:
  Statement(std::vector<std::string> words, std::string const & file, int line)
      : m_words(std::move(words)), m_file(file), m_line(line) {}

  int Line() const { return m_line; }
  bool IsAtEnd() const { return m_at == m_words.size(); }
  bool Takes(std::string_view word) {
    bool const isNext = !IsAtEnd() && m_words[m_at] == word;
    m_at += isNext ? 1 : 0;
    return isNext;
  }
  std::string const & Next(char const * what) {
    if (IsAtEnd())
      Refuse(std::string(what) + " is missing");
    return m_words[m_at++];
  }
  std::string Name(char const * what) {
    std::string const & name = Next(what);
    if (!IsName(name))
      Refuse("'" + name + "' can't be " + what + "; use letters, digits and '_', a letter first");
    return name;
  }
  void ExpectEquals(std::string const & name) {
    if (!Takes("="))
      Refuse("there is no '=' behind " + name + "; write " + name + " = ...");
  }
  double Number(std::string const & what) {
    std::string const & word = Next(what.c_str());
    double number = 0.0;
    if (!text::ParseReal(std::string_view(word), number) || !std::isfinite(number))
      Refuse("'" + word + "' is no plain number for " + what + "; write one such as 0.25 or 1e-3");
    return number;
  }
  void ExpectEnd() {
    if (!IsAtEnd())
      Refuse("'" + m_words[m_at] + "' is more than the line takes; put texts with blanks into quotes");
  }
  [[noreturn]] void Refuse(std::string const & problem) const {
    throw SourceError(m_file, m_line, m_words.front() + ": " + problem);
  }

private:
  std::vector<std::string> m_words;
  std::string m_file;
  int m_line;
  std::size_t m_at = 1;
};

// Within the scratch folder and nowhere else.
void CheckScratchName(Statement const & statement, std::string const & name) {
  fs::path const path(name);
  bool isInside = !name.empty() && !path.is_absolute() && path.has_filename();
  for (fs::path const & part : path)
    isInside = isInside && part != ".." && part != ".";
  if (!isInside)
    statement.Refuse("'" + name +
                     "' is no name of a file in the scratch folder; give one without '..' and '/' at its "
                     "start");
}

class Reader {
public:
  explicit Reader(std::string const & path) : m_folder(fs::absolute(path).parent_path()) { m_file.path = path; }

  SolverFile Read() {
    std::string const content = ReadWholeFile(m_file.path);
    if (!text::IsUtf8(content) || content.find('\0') != std::string::npos)
      throw SourceError(m_file.path, 0, "is no text file in UTF-8; name a solver file");
    std::istringstream lines(content);
    for (std::string line; std::getline(lines, line);)
      ReadLine(line);
    CheckSolverFile(m_file);
    return std::move(m_file);
  }

private:
  void ReadLine(std::string const & line) {
    ++m_line;
    std::size_t const first = line.find_first_not_of(" \t\r");
    if (first == std::string::npos || line[first] == '#')
      return;
    std::size_t const end = std::min(line.find_first_of(" \t\r", first), line.size());
    std::string const keyword = line.substr(first, end - first);
    if (keyword == "shell")
      return ReadShell(line.substr(end));
    std::vector<std::string> words;
    std::string problem;
    if (!SplitWords(line, keyword != "command", words, problem))
      throw SourceError(m_file.path, m_line, keyword + ": " + problem);
    Statement statement(words, m_file.path, m_line);
    ReadStatement(keyword, statement);
  }

  void ReadStatement(std::string const & keyword, Statement & statement) {
    using ReadOne = void (Reader::*)(Statement &);
    static constexpr std::pair<char const *, ReadOne> kStatements[] = {
        {"variable", &Reader::ReadVariable},
        {"setting", &Reader::ReadSetting},
        {"setup", &Reader::ReadSetup},
        {"template", &Reader::ReadTemplate},
        {"file", &Reader::ReadFile},
        {"command", &Reader::ReadCommand},
        {"input", &Reader::ReadInput},
        {"output", &Reader::ReadOutput},
        {"scalar", &Reader::ReadScalar},
        {"column", &Reader::ReadColumn},
        {"time-limit", &Reader::ReadTimeLimit},
        {"output-limit", &Reader::ReadOutputLimit},
        {"success", &Reader::ReadSuccess},
    };
    std::string known;
    for (auto const & [name, read] : kStatements) {
      if (keyword == name) {
        (this->*read)(statement);
        statement.ExpectEnd();
        return;
      }
      known += std::string(name) + ", ";
    }
    throw SourceError(m_file.path, m_line,
                      "'" + keyword + "': there is no such statement; there are " + known +
                          "shell; remarks begin with '#'");
  }

  void ReadVariable(Statement & statement) {
    DesignVariable variable;
    variable.line = m_line;
    variable.name = statement.Name("the name of a variable");
    statement.ExpectEquals(variable.name);
    variable.value = statement.Number(variable.name);
    if (!statement.IsAtEnd())
      variable.unit = statement.Next("its unit");
    NoteUnit(variable);
    m_file.variables.push_back(variable);
  }

  // Values that a user gives with a unit become SI, which is not what the program takes.
  void NoteUnit(DesignVariable const & variable) {
    Units::Scale scale;
    bool const isKnown = Units::FindScale(text::FromUtf8(variable.unit).View(), scale) && scale.unit != Units::kNoUnits;
    if (isKnown && (scale.factor != 1.0 || scale.exponent != 0 || scale.offset != 0.0))
      m_file.notes.push_back(m_file.path + ":" + std::to_string(variable.line) + ": " + variable.name + ": is in " +
                             variable.unit + " for the program; give plain numbers, as one with a unit becomes SI");
  }

  void ReadSetting(Statement & statement) {
    std::string const name = statement.Name("the name of a setting");
    statement.ExpectEquals(name);
    m_file.settings.emplace_back(name, statement.Next("its text"));
  }

  void ReadSetup(Statement & statement) {
    SetupLine setup;
    setup.line = m_line;
    setup.name = statement.Next("its name");
    while (!statement.IsAtEnd()) {
      std::string const name = statement.Name("the name of a setting");
      statement.ExpectEquals(name);
      if (FindValue(setup.settings, name))
        statement.Refuse(name + " is given twice; give it once");
      setup.settings.emplace_back(name, statement.Next("the text of a setting"));
    }
    m_file.setups.push_back(setup);
  }

  InputFile ReadInputFile(Statement & statement) {
    InputFile input;
    input.line = m_line;
    fs::path const given = statement.Next("the name of the file");
    input.path = (given.is_absolute() ? given : m_folder / given).lexically_normal().string();
    input.name = statement.Takes("as") ? statement.Next("its name in the scratch folder") : given.filename().string();
    CheckScratchName(statement, input.name);
    return input;
  }

  void ReadTemplate(Statement & statement) {
    InputFile input = ReadInputFile(statement);
    input.hasHoles = true;
    input.content = Template(ReadWholeFile(input.path, m_file.path, m_line), input.path);
    m_file.inputs.push_back(std::move(input));
  }

  void ReadFile(Statement & statement) {
    InputFile input = ReadInputFile(statement);
    std::error_code failure;
    if (!fs::is_regular_file(input.path, failure))
      throw SourceError(m_file.path, m_line,
                        "file: " + input.path + " is not there; put it there, or correct the name");
    m_file.inputs.push_back(std::move(input));
  }

  void ReadCommand(Statement & statement) {
    TakeCommandLine(statement);
    while (!statement.IsAtEnd())
      m_file.words.emplace_back(statement.Next("a word"), m_file.path, m_line);
    if (m_file.words.empty())
      statement.Refuse("the program is missing; write 'command PROGRAM WORD ...'");
    // A program that is told by a path is found from the solver file, one that is told by its name on the PATH.
    std::string const & program = m_file.words.front().Text();
    if (program.find('/') != std::string::npos && !fs::path(program).is_absolute())
      m_file.words.front() = Template((m_folder / program).lexically_normal().string(), m_file.path, m_line);
  }

  void ReadShell(std::string const & rest) {
    Statement statement({"shell"}, m_file.path, m_line);
    TakeCommandLine(statement);
    m_file.usesShell = true;
    if (rest.find_first_not_of(" \t\r") == std::string::npos)
      statement.Refuse("the command is missing; write 'shell COMMAND'");
    m_file.words.emplace_back(rest, m_file.path, m_line);
  }

  void TakeCommandLine(Statement const & statement) {
    if (m_file.commandLine > 0)
      statement.Refuse("there is a command already, in line " + std::to_string(m_file.commandLine) +
                       "; leave one of them out");
    m_file.commandLine = m_line;
  }

  void ReadInput(Statement & statement) { m_file.standardInput = statement.Next("the name of a file"); }

  void ReadOutput(Statement & statement) {
    OutputLine output;
    output.line = m_line;
    std::string const & form = statement.Next("its form");
    if (form != "csv" && form != "table" && form != "json")
      statement.Refuse("there is no form '" + form + "'; use csv, table or json");
    using Form = OutputLine::Form;
    output.form = form == "csv" ? Form::kCsv : form == "table" ? Form::kTable : Form::kJson;
    if (!statement.Takes("stdout")) {
      output.file = statement.Next("the name of the file, or stdout,");
      CheckScratchName(statement, output.file);
    }
    output.hasHeader = output.form == Form::kJson || !statement.Takes("no-header");
    m_file.outputs.push_back(output);
  }

  QuantityLine ReadQuantity(Statement & statement) {
    if (m_file.outputs.empty())
      statement.Refuse("stands before any output; write 'output csv FILE' first");
    QuantityLine quantity;
    quantity.line = m_line;
    quantity.name = statement.Name("the name of a quantity");
    statement.ExpectEquals(quantity.name);
    quantity.where = statement.Next(m_file.outputs.back().form == OutputLine::Form::kJson
                                        ? "the JSON pointer, such as /results/mass,"
                                        : "the column's name");
    return quantity;
  }

  void ReadScalar(Statement & statement) {
    QuantityLine quantity = ReadQuantity(statement);
    quantity.kind = statement.Takes("first")  ? QuantityLine::Kind::kFirst
                    : statement.Takes("last") ? QuantityLine::Kind::kLast
                                              : QuantityLine::Kind::kOnly;
    if (statement.Takes("unit"))
      quantity.unit = statement.Next("the unit");
    m_file.outputs.back().quantities.push_back(quantity);
  }

  void ReadColumn(Statement & statement) {
    QuantityLine quantity = ReadQuantity(statement);
    if (statement.Takes("over"))
      quantity.over = statement.Name("the name of a column");
    if (statement.Takes("unit"))
      quantity.unit = statement.Next("the unit");
    m_file.outputs.back().quantities.push_back(quantity);
  }

  void ReadTimeLimit(Statement & statement) {
    m_file.timeLimit = statement.Number("the time limit");
    if (!(m_file.timeLimit > 0.0 && m_file.timeLimit <= 1e9))
      statement.Refuse("takes seconds above 0, at most 1e9");
    statement.Takes("s");
  }

  void ReadOutputLimit(Statement & statement) {
    m_file.outputLimit = statement.Number("the output limit") * 1e6;
    if (!(m_file.outputLimit >= 1.0 && m_file.outputLimit <= kMostBytes))
      statement.Refuse("takes megabytes above 0, at most 100000");
    statement.Takes("MB");
  }

  void ReadSuccess(Statement & statement) {
    m_file.successCodes.clear();
    do {
      double const code = statement.Number("an exit code");
      if (!(code >= 0 && code <= 255 && code == std::floor(code)))
        statement.Refuse("exit codes are whole numbers from 0 to 255");
      m_file.successCodes.push_back(static_cast<int>(code));
    } while (!statement.IsAtEnd());
  }

  fs::path m_folder;
  SolverFile m_file;
  int m_line = 0;
};

} // namespace

SolverFile ReadSolverFile(std::string const & path) { return Reader(path).Read(); }

} // namespace command
