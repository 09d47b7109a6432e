#include "products/rfcircuit/engine/netlist/CaseFolding.h"
#include "products/rfcircuit/engine/netlist/ElementSyntax.h"
#include "products/rfcircuit/engine/netlist/IncludeReader.h"
#include "products/rfcircuit/engine/netlist/LineCursor.h"
#include "products/rfcircuit/engine/netlist/NetlistContent.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/engine/netlist/NetworkFiles.h"
#include "products/rfcircuit/engine/netlist/SourceText.h"

#include <algorithm>
#include <optional>

namespace rf {
namespace {

constexpr std::size_t DEEPEST_DEFINITION = 64;

bool IsParameterName(std::string const & name) {
  bool good = !name.empty() && (IsLetter(name[0]) || name[0] == '_');
  for (char c : name)
    good = good && (IsLetter(c) || IsDigit(c) || c == '_' || c == '.');
  return good;
}

bool IsForOtherAnalyses(std::string const & word) {
  static char const * const words[] = {".ac",      ".dc",     ".op",    ".noise",  ".tf",    ".pz",
                                       ".four",    ".meas",   ".print", ".plot",   ".save",  ".probe",
                                       ".options", ".option", ".temp",  ".ic",     ".width", ".nodeset",
                                       ".measure", ".title",  ".endc",  ".control"};
  return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

/** Sorts statements into the content; keeps track of the subcircuit that is being defined. */
class ContentBuilder {
public:
  void Take(LogicalLine const & line, bool inMainFile) {
    LineCursor cursor(line);
    std::string const word = cursor.Peek();
    if (word.empty() || word[0] != '.')
      Element(line);
    else
      Command(Folded(word), line, inMainFile);
  }

  std::shared_ptr<NetlistContent> Finish() {
    if (!m_Open.empty())
      throw NetlistError(m_Open.back().definition->where, ".subckt " + m_Open.back().definition->name,
                         "the subcircuit is not closed", "end it with .ends");
    return m_Content;
  }

  std::vector<std::string> const & DataFiles() const { return m_NetworkFiles.Files(); }

private:
  struct OpenDefinition {
    SubcircuitDefinition * definition;
    std::map<std::string, SourcePosition> elementNames;
  };

  void Element(LogicalLine const & line) {
    m_Content->fingerprint.Add(line.text);
    Block().elements.push_back(Unique(ReadElement(line)));
    ElementStatement & element = Block().elements.back();
    if (element.kind == 'n')
      m_Content->fingerprint.Add("data " + std::to_string(m_NetworkFiles.Fill(element)));
  }

  StatementBlock & Block() { return m_Open.empty() ? m_Content->top : m_Open.back().definition->body; }

  ElementStatement Unique(ElementStatement element) {
    auto & names = m_Open.empty() ? m_TopElementNames : m_Open.back().elementNames;
    auto const [first, added] = names.emplace(Folded(element.name), element.where);
    if (!added)
      throw NetlistError(element.where, element.name,
                         "the name stands twice, first in line " + std::to_string(first->second.line) + " of " +
                             first->second.FileName(),
                         "give each element its own name");
    return element;
  }

  void Command(std::string const & word, LogicalLine const & line, bool inMainFile) {
    LineCursor cursor(line);
    cursor.Word();
    if (word == ".param" || word == ".params")
      Parameters(cursor, line, inMainFile);
    else if (word == ".subckt")
      OpenSubcircuit(cursor, line);
    else if (word == ".ends")
      CloseSubcircuit(cursor, line);
    else if (word == ".sp")
      Sweep(cursor, line);
    else if (word == ".tran")
      Transient(line);
    else if (word == ".global")
      GlobalNodes(cursor, line);
    else if (IsForOtherAnalyses(word))
      NoteOnce(word, word == ".control" ? "ignored up to .endc" : "ignored", line);
    else
      throw NetlistError(line.Start(), word, "unknown command",
                         "known are .param, .subckt, .ends, .include, .sp, .global and .end");
  }

  void Transient(LogicalLine const & line) {
    m_Content->transients.push_back({line.text, line.Start()});
    NoteOnce(".tran", "ignored; .sp sweeps alone are solved", line);
  }

  void NoteOnce(std::string const & word, std::string const & message, LogicalLine const & line) {
    auto & notes = m_Content->notes;
    bool const isNoted = std::any_of(notes.begin(), notes.end(), [&](auto const & note) { return note.thing == word; });
    if (!isNoted)
      notes.push_back({line.Start(), word, message, line.text});
  }

  void Parameters(LineCursor & cursor, LogicalLine const & line, bool inMainFile) {
    auto assignments = ReadAssignments(cursor, ".param");
    if (assignments.empty())
      throw NetlistError(line.Start(), ".param", "no parameter is given", "write '.param NAME=VALUE ...'");
    for (NameAndExpression & assignment : assignments) {
      CheckName(assignment, ".param", Block().parameters);
      auto const value = assignment.expression.PlainNumber();
      bool const isVariable = inMainFile && m_Open.empty() && value;
      m_Content->fingerprint.Add(".param " + assignment.name + "=" +
                                 (isVariable ? std::string() : assignment.expression.Text()));
      if (isVariable)
        m_Content->designVariables.push_back(
            {assignment.name, *value, assignment.expression.Text(), assignment.expression.Where()});
      Block().parameters.push_back(std::move(assignment));
    }
  }

  void CheckName(NameAndExpression const & assignment, std::string const & thing,
                 std::vector<NameAndExpression> const & others) {
    SourcePosition const & where = assignment.expression.Where();
    if (!IsParameterName(assignment.name) || assignment.folded == "pi")
      throw NetlistError(where, thing, "'" + assignment.name + "' can't be the name of a parameter",
                         "begin with a letter, go on with letters, digits and underscores; pi is a constant");
    auto const first = std::find_if(others.begin(), others.end(),
                                    [&](auto const & other) { return other.folded == assignment.folded; });
    if (first != others.end())
      throw NetlistError(where, thing,
                         "parameter '" + assignment.name + "' is defined twice, first in line " +
                             std::to_string(first->expression.Where().line) + " of " +
                             first->expression.Where().FileName(),
                         "remove one of the two");
  }

  void OpenSubcircuit(LineCursor & cursor, LogicalLine const & line) {
    m_Content->fingerprint.Add(line.text);
    auto definition = std::make_unique<SubcircuitDefinition>();
    definition->name = cursor.Word();
    definition->where = line.Start();
    std::string const thing = ".subckt " + definition->name;
    while (!cursor.AtEnd() && !cursor.AtAssignment() && Folded(cursor.Peek()) != "params:")
      definition->nodes.push_back(Folded(cursor.Word()));
    CheckFormalNodes(*definition, thing);
    for (NameAndExpression & assignment : ReadAssignments(cursor, thing)) {
      CheckName(assignment, thing, definition->defaults);
      definition->defaults.push_back(std::move(assignment));
    }
    if (m_Open.size() >= DEEPEST_DEFINITION)
      throw NetlistError(line.Start(), thing, "subcircuits are defined more than 64 deep in each other",
                         "define some of them outside");
    auto const [place, added] = Block().subcircuits.emplace(Folded(definition->name), nullptr);
    if (!added)
      throw NetlistError(line.Start(), thing,
                         "the subcircuit is defined twice, first in line " + std::to_string(place->second->where.line) +
                             " of " + place->second->where.FileName(),
                         "remove or rename one of the two");
    place->second = std::move(definition);
    m_Open.push_back({place->second.get(), {}});
  }

  static void CheckFormalNodes(SubcircuitDefinition const & definition, std::string const & thing) {
    if (definition.name.empty() || definition.nodes.empty())
      throw NetlistError(definition.where, thing, "its name or its nodes are missing",
                         "write '.subckt NAME NODE ... NAME=DEFAULT ...'");
    for (auto node = definition.nodes.begin(); node != definition.nodes.end(); ++node) {
      if (*node == "0" || *node == "gnd")
        throw NetlistError(definition.where, thing, "ground can't be one of its nodes",
                           "ground is known inside of every subcircuit: leave it out");
      if (std::find(definition.nodes.begin(), node, *node) != node)
        throw NetlistError(definition.where, thing, "its node '" + *node + "' stands twice", "name each node once");
    }
  }

  void CloseSubcircuit(LineCursor & cursor, LogicalLine const & line) {
    if (m_Open.empty())
      throw NetlistError(line.Start(), ".ends", "there is no open subcircuit", "remove it or add the .subckt line");
    m_Content->fingerprint.Add(".ends");
    std::string const name = cursor.Word();
    std::string const & open = m_Open.back().definition->name;
    if (!name.empty() && Folded(name) != Folded(open))
      throw NetlistError(line.Start(), ".ends " + name, "the open subcircuit is '" + open + "'",
                         "close that one first");
    m_Open.pop_back();
  }

  void Sweep(LineCursor & cursor, LogicalLine const & line) {
    SweepStatement sweep;
    sweep.where = line.Start();
    sweep.text = line.text;
    sweep.kind = Folded(cursor.Word());
    bool const isList = sweep.kind == "list";
    std::size_t const needed = isList ? 1 : 3;
    while (!cursor.AtEnd() && (sweep.numbers.size() < needed || !(IsMethod(cursor) || IsOfFiles(cursor))))
      sweep.numbers.push_back(cursor.Value(".sp"));
    Method(cursor, sweep);
    bool const isKnown = isList || sweep.kind == "lin" || sweep.kind == "dec" || sweep.kind == "oct";
    // SPICE's fourth number asks for noise, which a linear network without sources of noise doesn't have.
    std::size_t const count = sweep.numbers.size();
    if (!isKnown || (isList ? count == 0 : count != 3 && count != 4))
      throw NetlistError(sweep.where, ".sp", "'" + line.text + "' is not a sweep",
                         "write '.sp lin POINTS F1 F2', '.sp dec POINTS F1 F2', '.sp oct POINTS F1 F2' or "
                         "'.sp list F1 F2 ...'");
    m_Content->sweeps.push_back(std::move(sweep));
  }

  static bool IsMethod(LineCursor & cursor) {
    std::string const word = Folded(cursor.Peek());
    return word == "adaptive" || word == "direct";
  }

  // Other simulators pass over words behind the numbers, so the file still runs there.
  static void Method(LineCursor & cursor, SweepStatement & sweep) {
    if (cursor.AtEnd())
      return;
    bool const isMethod = IsMethod(cursor);
    if (isMethod)
      sweep.isAdaptive = Folded(cursor.Word()) == "adaptive";
    SourcePosition const where = cursor.Where();
    while (!cursor.AtEnd()) {
      for (NameAndExpression & setting : ReadAssignments(cursor, ".sp", IsOfFiles))
        sweep.settings.push_back(std::move(setting));
      if (!cursor.AtEnd())
        File(cursor, sweep);
    }
    if (!sweep.isAdaptive && !sweep.settings.empty())
      throw NetlistError(where, ".sp", "a direct sweep has no settings", "remove them, or write adaptive for direct");
    for (auto setting = sweep.settings.begin(); setting != sweep.settings.end(); ++setting) {
      if (std::any_of(sweep.settings.begin(), setting,
                      [&](auto const & other) { return other.folded == setting->folded; }))
        throw NetlistError(where, ".sp", "'" + setting->name + "' is set twice", "remove one of the two");
    }
  }

  // The first word or NAME= of what tells of files.
  static bool IsOfFiles(LineCursor & cursor) {
    std::string const word = Folded(cursor.Peek());
    return cursor.AtAssignment() ? word == "z0" || word == "voltages" : word == "touchstone";
  }

  static void File(LineCursor & cursor, SweepStatement & sweep) {
    SourcePosition const where = cursor.Where();
    std::string const word = Folded(cursor.Word());
    bool const isTwice = word == "z0" ? !sweep.z0.empty() : word == "voltages" && !sweep.voltages.empty();
    if (isTwice || (word == "touchstone" && sweep.isTouchstone))
      throw NetlistError(where, ".sp", "'" + word + "' stands twice", "remove one of the two");
    if (word == "touchstone") {
      sweep.isTouchstone = true;
      return;
    }
    cursor.TakeEquals();
    auto & numbers = word == "z0" ? sweep.z0 : sweep.voltages;
    do
      numbers.push_back(cursor.Value(".sp"));
    while (word == "voltages" && !cursor.AtEnd() && !cursor.AtAssignment() && !IsMethod(cursor) && !IsOfFiles(cursor));
  }

  void GlobalNodes(LineCursor & cursor, LogicalLine const & line) {
    m_Content->fingerprint.Add(line.text);
    while (!cursor.AtEnd())
      m_Content->globalNodes.insert(Folded(cursor.Word()));
  }

  std::shared_ptr<NetlistContent> m_Content = std::make_shared<NetlistContent>();
  NetworkFiles m_NetworkFiles;
  std::vector<OpenDefinition> m_Open;
  std::map<std::string, SourcePosition> m_TopElementNames;
};

bool IsElementWithNumbers(LogicalLine const & line) {
  try {
    ElementStatement const element = ReadElement(line);
    bool const isExpression = line.text.find('{') != std::string::npos;
    return !element.values.empty() &&
           (isExpression || std::all_of(element.values.begin(), element.values.end(),
                                        [](auto const & value) { return value.expression.PlainNumber().has_value(); }));
  } catch (NetlistError const &) {
    return false; // words for people
  }
}

// A title is any text.  One that is a command or an element was hardly meant as a title, and without it the circuit is
// another one: a command is refused, an element is noted, as a title of three words may look like one by chance.
std::optional<NetlistNote> CheckTitle(std::string const & title, std::string const & fileName) {
  if (title.empty() || title[0] == '+')
    return std::nullopt;
  auto const lines = SplitIntoStatements(title, fileName, 0);
  if (lines.empty())
    return std::nullopt;
  std::string const word = Folded(LineCursor(lines[0]).Word());
  if (word.size() > 1 && word[0] == '.' && IsLetter(word[1]) && word != ".title")
    throw NetlistError(lines[0].Start(), word, "line 1 is the title and is not read, though it looks like a statement",
                       "put a title line in front of it");
  if (!IsElementWithNumbers(lines[0]))
    return std::nullopt;
  return NetlistNote{lines[0].Start(),
                     {},
                     "line 1 is the title and is not read, though it looks like a statement; put a title line in "
                     "front of it",
                     title};
}

} // namespace

Netlist ReadNetlistText(std::string const & text, std::string const & fileName) {
  auto const titleNote = CheckTitle(FirstLine(text), fileName);
  ContentBuilder builder;
  IncludeReader reader([&](LogicalLine const & line, bool inMainFile) { builder.Take(line, inMainFile); });
  std::string const title = reader.FeedMain(text, fileName);
  auto const content = builder.Finish();
  content->title = title;
  content->files = reader.Files();
  content->files.insert(content->files.end(), builder.DataFiles().begin(), builder.DataFiles().end());
  if (titleNote)
    content->notes.insert(content->notes.begin(), *titleNote);
  Netlist const netlist(content);
  netlist.Sweeps(); // a senseless sweep is told at once
  return netlist;
}

Netlist ReadNetlist(std::filesystem::path const & path) {
  return ReadNetlistText(ReadSourceText(path, {}, LARGEST_NETLIST_IN_BYTES), path.string());
}

} // namespace rf
