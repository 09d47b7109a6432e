#include "products/command/source/SolverFileCheck.h"

#include "basekit/text/Utf8.h"
#include "products/command/source/SolverFile.h"
#include "products/command/source/SourceError.h"

#include <algorithm>

namespace command {
namespace {

constexpr char const * kDefaultSetup = "Run";

/// The walk over one file.
class Check {
public:
  explicit Check(SolverFile & file) : m_file(file) {}

  void All() {
    Names();
    Commands();
    Inputs();
    Setups();
    Outputs();
    Holes();
    NoteUnused();
  }

private:
  [[noreturn]] void Refuse(int line, std::string const & problem) const {
    throw SourceError(m_file.path, line, problem);
  }

  void Names() {
    HoleValues seen;
    auto const enter = [&](std::string const & name, int line) {
      if (FindValue(seen, name))
        Refuse(line, name + ": is there twice; give each variable and setting a name of its own");
      seen.emplace_back(name, std::string());
    };
    for (DesignVariable const & variable : m_file.variables)
      enter(variable.name, variable.line);
    for (auto const & [name, text] : m_file.settings)
      enter(name, 0);
  }

  void Commands() {
    if (m_file.commandLine == 0)
      Refuse(0, "there is no command; add a line such as 'command python3 solver.py'");
  }

  bool HasInput(std::string const & name) const {
    return std::any_of(m_file.inputs.begin(), m_file.inputs.end(),
                       [&](InputFile const & input) { return input.name == name; });
  }

  void Inputs() {
    for (auto input = m_file.inputs.begin(); input != m_file.inputs.end(); ++input)
      if (std::any_of(m_file.inputs.begin(), input, [&](auto const & other) { return other.name == input->name; }))
        Refuse(input->line, input->name + ": is the name of two files in the scratch folder; give one another name by "
                                          "'as NAME'");
    if (!m_file.standardInput.empty() && !HasInput(m_file.standardInput))
      Refuse(0, "input: " + m_file.standardInput + " is no template and no file; add 'template FILE as " +
                    m_file.standardInput + "'");
  }

  void Setups() {
    if (m_file.setups.empty())
      m_file.setups.push_back({kDefaultSetup, {}, 0});
    for (auto setup = m_file.setups.begin(); setup != m_file.setups.end(); ++setup) {
      if (setup->name.empty() || setup->name.find(':') != std::string::npos)
        Refuse(setup->line, "setup '" + setup->name + "': can't be a name; give one without a colon");
      if (std::any_of(m_file.setups.begin(), setup,
                      [&](auto const & other) { return text::EqualNoCase(other.name, setup->name); }))
        Refuse(setup->line, "setup " + setup->name + ": is there twice; give it another name");
      HoleValues fitted;
      std::string const problem = FitSettings(m_file, setup->settings, fitted);
      if (!problem.empty())
        Refuse(setup->line, "setup " + setup->name + ": " + problem);
      setup->settings = fitted;
    }
  }

  void Outputs() {
    if (m_file.outputs.empty())
      Refuse(0, "there is no output; add lines such as 'output csv result.csv' and 'scalar mass = mass'");
    HoleValues columns;
    HoleValues names;
    for (OutputLine const & output : m_file.outputs) {
      if (output.quantities.empty())
        Refuse(output.line,
               "output: nothing is taken from " + output.Name() + "; add a scalar or column line below it");
      for (QuantityLine const & quantity : output.quantities)
        Quantity(output, quantity, names, columns);
      for (QuantityLine const & quantity : output.quantities)
        NoteLikeVariable(quantity);
    }
    for (OutputLine const & output : m_file.outputs)
      for (QuantityLine const & quantity : output.quantities)
        if (!quantity.over.empty() && !FindValue(columns, quantity.over))
          Refuse(quantity.line, quantity.name + ": runs over '" + quantity.over + "', which is no column; add it");
  }

  void NoteLikeVariable(QuantityLine const & quantity) {
    for (DesignVariable const & variable : m_file.variables)
      if (text::EqualNoCase(variable.name, quantity.name))
        m_file.notes.push_back(m_file.path + ":" + std::to_string(quantity.line) + ": " + quantity.name +
                               ": is the name of a variable too; another one tells the two apart in tables");
  }

  void Quantity(OutputLine const & output, QuantityLine const & quantity, HoleValues & names,
                HoleValues & columns) const {
    if (FindValue(names, quantity.name))
      Refuse(quantity.line, quantity.name + ": is the name of two quantities; give one another name");
    names.emplace_back(quantity.name, std::string());
    if (quantity.kind == QuantityLine::Kind::kColumn)
      columns.emplace_back(quantity.name, std::string());
    bool const isJson = output.form == OutputLine::Form::kJson;
    if (isJson && !quantity.where.empty() && quantity.where.front() != '/')
      Refuse(quantity.line, quantity.name + ": '" + quantity.where +
                                "' is no JSON pointer; write one such as "
                                "/results/mass");
    bool const isNumber = !quantity.where.empty() && quantity.where.size() < 7 &&
                          quantity.where.find_first_not_of("0123456789") == std::string::npos &&
                          quantity.where.front() != '0';
    if (!output.hasHeader && !isNumber)
      Refuse(quantity.line, quantity.name + ": '" + quantity.where +
                                "' is no number of a column; without a header "
                                "columns are 1, 2, 3, ...");
  }

  void Holes() {
    for (InputFile const & input : m_file.inputs)
      for (Template::Hole const & hole : input.content.Holes())
        Hole(hole, input.path);
    for (Template const & word : m_file.words)
      for (Template::Hole const & hole : word.Holes())
        Hole(hole, m_file.path);
  }

  void Hole(Template::Hole const & hole, std::string const & file) {
    m_used.push_back(hole.name);
    bool const isVariable = std::any_of(m_file.variables.begin(), m_file.variables.end(), [&](auto const & variable) {
      return text::EqualNoCase(variable.name, hole.name);
    });
    if (!isVariable && !FindValue(m_file.settings, hole.name))
      throw SourceError(file, hole.line,
                        "{" + hole.name +
                            "}: there is no variable or setting of that name; add "
                            "'variable " +
                            hole.name + " = NUMBER' to " + m_file.path + ", or write '{{' for a brace");
  }

  void NoteUnused() {
    auto const note = [this](char const * what, std::string const & name) {
      bool const isUsed = std::any_of(m_used.begin(), m_used.end(),
                                      [&](std::string const & hole) { return text::EqualNoCase(hole, name); });
      if (!isUsed)
        m_file.notes.push_back(m_file.path + ": " + what + " " + name + ": has no hole {" + name +
                               "} anywhere, so it changes nothing");
    };
    for (DesignVariable const & variable : m_file.variables)
      note("variable", variable.name);
    for (auto const & [name, text] : m_file.settings)
      note("setting", name);
  }

  SolverFile & m_file;
  std::vector<std::string> m_used;
};

} // namespace

std::string FitSettings(SolverFile const & file, HoleValues const & given, HoleValues & fitted) {
  std::string known;
  fitted.clear();
  for (auto const & [name, byDefault] : file.settings) {
    known += (known.empty() ? "" : ", ") + name;
    if (std::string const * const text = FindValue(given, name))
      fitted.emplace_back(name, *text);
  }
  for (auto const & [name, text] : given)
    if (!FindValue(file.settings, name))
      return "there is no setting '" + name + "'; " +
             (known.empty() ? "the solver file has none" : "there are " + known) + "; add 'setting " + name +
             " = TEXT' to " + file.path + " for another one";
  return std::string();
}

void CheckSolverFile(SolverFile & file) { Check(file).All(); }

} // namespace command
