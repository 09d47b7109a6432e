#include "products/rfcircuit/engine/netlist/ElementSyntax.h"

#include "products/rfcircuit/engine/netlist/CaseFolding.h"
#include "products/rfcircuit/engine/netlist/LineCursor.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

namespace rf {
namespace {

using Words = std::initializer_list<std::string_view>;

bool IsOneOf(std::string const & word, Words words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

/** Reads the parts of one element line into a statement. */
class ElementReader {
public:
  explicit ElementReader(LogicalLine const & line) : m_Cursor(line) {
    m_Element.where = line.Start();
    m_Element.name = m_Cursor.Word();
    m_Element.kind = m_Element.name.empty() ? '\0' : Folded(m_Element.name[0]);
  }

  ElementStatement Read() {
    switch (m_Element.kind) {
    case 'r':
      return Passive("resistor", "R");
    case 'c':
      return Passive("capacitor", "C");
    case 'l':
      return Passive("inductor", "L");
    case 'k':
      return Coupling();
    case 't':
      return Line();
    case 'e':
    case 'g':
      return VoltageControlled();
    case 'f':
    case 'h':
      return CurrentControlled();
    case 'v':
    case 'i':
      return Source();
    case 'x':
      return Instance();
    case 'n':
      return Network();
    default:
      Refuse("unknown element",
             "elements begin with R, L, C, K, T, E, F, G, H, V, I, X or N; lines of commands with a point");
    }
  }

private:
  [[noreturn]] void Refuse(std::string const & message, std::string const & remedy) {
    throw NetlistError(m_Element.where, m_Element.name, message, remedy);
  }

  void Nodes(std::size_t count, std::string const & shape) {
    while (m_Element.nodes.size() < count) {
      if (m_Cursor.AtEnd() || m_Cursor.AtAssignment())
        Refuse("it has " + std::to_string(m_Element.nodes.size()) + " nodes, " + std::to_string(count) + " are needed",
               "write '" + shape + "'");
      m_Element.nodes.push_back(m_Cursor.Word());
    }
  }

  void Reference(std::string const & what, std::string const & shape) {
    if (m_Cursor.AtEnd() || m_Cursor.AtAssignment())
      Refuse("the " + what + " is missing", "write '" + shape + "'");
    m_Element.references.push_back(m_Cursor.Word());
  }

  void Store(std::string name, Expression expression) {
    std::string folded = Folded(name);
    if (m_Element.Find(folded))
      Refuse(folded.empty() ? "two values are given" : "'" + name + "' is given twice", "remove one of them");
    m_Element.values.push_back({std::move(name), std::move(folded), std::move(expression)});
  }

  // The one number of an element: bare, or assigned to the given name.
  void MainValue(std::string const & name, std::string const & shape) {
    if (m_Cursor.AtEnd())
      Refuse("its value is missing", "write '" + shape + "'");
    if (m_Cursor.AtAssignment() && Folded(m_Cursor.Peek()) == Folded(name)) {
      m_Cursor.Word();
      m_Cursor.TakeEquals();
      Store("", m_Cursor.AssignedValue(m_Element.name));
    } else if (m_Cursor.AtAssignment()) {
      Refuse("its value is missing before '" + m_Cursor.Peek() + "='", "write '" + shape + "'");
    } else {
      Store("", m_Cursor.Value(m_Element.name));
    }
  }

  ElementStatement Finish(Words known) {
    for (NameAndExpression & assignment : ReadAssignments(m_Cursor, m_Element.name)) {
      if (!IsOneOf(assignment.folded, known))
        Refuse("it knows no '" + assignment.name + "='", "remove it or check its spelling");
      Store(assignment.name, std::move(assignment.expression));
    }
    return std::move(m_Element);
  }

  ElementStatement Passive(std::string const & what, std::string const & letter) {
    std::string const shape = letter + "NAME NODE NODE VALUE";
    Nodes(2, shape);
    MainValue(letter, shape);
    if (!m_Cursor.AtEnd() && !m_Cursor.AtAssignment())
      Refuse("'" + m_Cursor.Peek() + "' stands behind the value",
             "a " + what + " has two nodes and one value: '" + shape + "'; put expressions in braces");
    return Finish({"ic"});
  }

  ElementStatement Coupling() {
    std::string const shape = "KNAME LNAME LNAME FACTOR";
    Reference("first inductor", shape);
    Reference("second inductor", shape);
    MainValue("k", shape);
    if (!m_Cursor.AtEnd() && !m_Cursor.AtAssignment())
      Refuse("'" + m_Cursor.Peek() + "' stands behind the factor", "couple two inductors at a time: '" + shape + "'");
    return Finish({});
  }

  ElementStatement Line() {
    Nodes(4, "TNAME NODE NODE NODE NODE Z0=... TD=...");
    if (!m_Cursor.AtEnd() && !m_Cursor.AtAssignment())
      Refuse("'" + m_Cursor.Peek() + "' stands behind its four nodes",
             "write 'Z0=... TD=...' or 'Z0=... F=... NL=...'");
    return Finish({"z0", "td", "f", "nl"});
  }

  ElementStatement VoltageControlled() {
    std::string const shape = m_Element.name.substr(0, 1) + "NAME OUT+ OUT- IN+ IN- GAIN";
    Nodes(4, shape);
    RefusePolynomial(m_Element.nodes[2]);
    MainValue("gain", shape);
    RefuseMore(shape);
    return Finish({});
  }

  ElementStatement CurrentControlled() {
    std::string const shape = m_Element.name.substr(0, 1) + "NAME OUT+ OUT- VNAME GAIN";
    Nodes(2, shape);
    Reference("controlling source", shape);
    RefusePolynomial(m_Element.references[0]);
    MainValue("gain", shape);
    RefuseMore(shape);
    return Finish({});
  }

  void RefusePolynomial(std::string const & word) {
    if (IsOneOf(Folded(word), {"poly", "value", "vol", "cur", "table"}))
      Refuse("only linear sources with a constant gain are known",
             "replace '" + word + "' by controlling nodes and a gain");
  }

  void RefuseMore(std::string const & shape) {
    if (!m_Cursor.AtEnd() && !m_Cursor.AtAssignment())
      Refuse("'" + m_Cursor.Peek() + "' stands behind the gain", "write '" + shape + "'");
  }

  ElementStatement Instance() {
    while (!m_Cursor.AtEnd() && !m_Cursor.AtAssignment() && !AtParamsWord())
      m_Element.nodes.push_back(m_Cursor.Word());
    if (m_Element.nodes.size() < 2)
      Refuse("nodes and the subcircuit's name are missing", "write 'XNAME NODE ... SUBCIRCUIT NAME=VALUE ...'");
    m_Element.references.push_back(m_Element.nodes.back());
    m_Element.nodes.pop_back();
    for (NameAndExpression & assignment : ReadAssignments(m_Cursor, m_Element.name))
      Store(assignment.name, std::move(assignment.expression));
    return std::move(m_Element);
  }

  // Whether the last node is the reference is known when the file has told its ports.
  ElementStatement Network() {
    while (!m_Cursor.AtEnd() && !m_Cursor.AtAssignment())
      m_Element.nodes.push_back(m_Cursor.Word());
    if (m_Element.nodes.size() < 2)
      Refuse("nodes and the file's name are missing", "write 'NNAME NODE ... FILE', with one node for each port");
    m_Element.references.push_back(m_Element.nodes.back());
    m_Element.nodes.pop_back();
    return Finish({});
  }

  bool AtParamsWord() { return IsOneOf(Folded(m_Cursor.Peek()), {"params:", "param:"}); }

  // Independent sources: a bare value is the dc one; what drives a transient is passed over.
  ElementStatement Source() {
    Nodes(2, m_Element.name.substr(0, 1) + "NAME NODE NODE dc VALUE ac VALUE");
    while (!m_Cursor.AtEnd()) {
      std::string const word = Folded(m_Cursor.Peek());
      if (IsOneOf(word, {"dc", "portnum", "z0", "pwr", "freq", "phase"})) {
        m_Cursor.Word();
        KeywordValue(word);
      } else if (word == "ac") {
        m_Cursor.Word();
        AlternatingValue();
      } else if (IsOneOf(word, {"sin", "pulse", "pwl", "exp", "sffm", "am", "trnoise", "trrandom"})) {
        m_Cursor.Word();
        m_Cursor.SkipArguments();
      } else if (!m_Element.Find("dc") && !m_Cursor.AtAssignment()) {
        Store("dc", m_Cursor.Value(m_Element.name));
      } else {
        Refuse("'" + m_Cursor.Peek() + "' is not a part of a source",
               "parts are dc, ac, portnum, z0 and the waveforms sin, pulse, pwl, exp, sffm and am");
      }
    }
    return std::move(m_Element);
  }

  void KeywordValue(std::string const & word) {
    bool const assigned = m_Cursor.TakeEquals();
    Store(word, assigned ? m_Cursor.AssignedValue(m_Element.name) : m_Cursor.Value(m_Element.name));
  }

  bool AtNumber() {
    std::string const next = m_Cursor.Peek();
    return !next.empty() && (IsDigit(next[0]) || std::string_view("{'+-.").find(next[0]) != std::string_view::npos);
  }

  // `ac` alone is one; a second number is the phase in degrees.
  void AlternatingValue() {
    bool const assigned = m_Cursor.TakeEquals();
    if (!assigned && !AtNumber()) {
      Store("ac", Expression::ParseWhole("1", m_Element.where, m_Element.name));
      return;
    }
    Store("ac", m_Cursor.Value(m_Element.name));
    if (AtNumber())
      Store("acphase", m_Cursor.Value(m_Element.name));
  }

  LineCursor m_Cursor;
  ElementStatement m_Element;
};

} // namespace

Expression const * ElementStatement::Find(std::string const & foldedName) const {
  for (NameAndExpression const & value : values) {
    if (value.folded == foldedName)
      return &value.expression;
  }
  return nullptr;
}

ElementStatement ReadElement(LogicalLine const & line) { return ElementReader(line).Read(); }

std::vector<NameAndExpression> ReadAssignments(LineCursor & cursor, std::string const & thing,
                                               std::function<bool(LineCursor &)> const & isEnd) {
  std::vector<NameAndExpression> assignments;
  while (!cursor.AtEnd() && !(isEnd && isEnd(cursor))) {
    SourcePosition const where = cursor.Where();
    std::string const name = cursor.Word();
    std::string const folded = Folded(name);
    if (folded == "params:" || folded == "param:")
      continue;
    if (!cursor.TakeEquals() || name == "=")
      throw NetlistError(where, thing, "'" + name + "' stands where NAME=VALUE should",
                         "put '=' behind a name, expressions with blanks in braces");
    assignments.push_back({name, folded, cursor.AssignedValue(thing)});
  }
  return assignments;
}

} // namespace rf
