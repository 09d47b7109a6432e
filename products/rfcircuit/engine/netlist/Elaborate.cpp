#include "products/rfcircuit/engine/netlist/Elaborate.h"

#include "products/rfcircuit/engine/netlist/CaseFolding.h"
#include "products/rfcircuit/engine/netlist/ElementValues.h"
#include "products/rfcircuit/engine/netlist/NetlistContent.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/engine/netlist/ParameterScope.h"
#include "products/rfcircuit/engine/network/SParameterTable.h"

#include <algorithm>
#include <optional>
#include <set>
#include <unordered_map>

namespace rf {
namespace {

constexpr std::size_t DEEPEST_INSTANCE = 100;
constexpr std::size_t MOST_ELEMENTS = 1'000'000; // instances count too: empty ones must not go on for ever

/** Where subcircuits are looked up: the body that is being expanded, then those that its definition stands in. */
struct Definitions {
  StatementBlock const & block;
  Definitions const * outer;

  std::pair<SubcircuitDefinition const *, Definitions const *> Find(std::string const & folded) const {
    for (Definitions const * level = this; level; level = level->outer) {
      auto const found = level->block.subcircuits.find(folded);
      if (found != level->block.subcircuits.end())
        return {found->second.get(), level};
    }
    return {nullptr, nullptr};
  }
};

/** One body in the course of being expanded. */
struct Level {
  Definitions definitions;
  ParameterScope & scope;
  std::string path;                              // of instances, with a point at its end
  std::unordered_map<std::string, int> nodes;    // formal nodes
  std::unordered_map<std::string, int> elements; // by folded local name
};

class Elaboration {
public:
  explicit Elaboration(NetlistContent const & content) : m_Content(content) { m_Parts.file = content.files.front(); }

  Circuit Run(Overrides const & overrides) {
    ParameterScope scope(m_Content, overrides);
    Level top{{m_Content.top, nullptr}, scope, "", {}, {}};
    Expand(top);
    std::sort(m_Parts.ports.begin(), m_Parts.ports.end(), [](Port const & left, Port const & right) {
      return std::pair(left.number, left.element) < std::pair(right.number, right.element);
    });
    Circuit circuit(std::move(m_Parts));
    CheckCircuit(circuit);
    return circuit;
  }

private:
  void Expand(Level & level) {
    auto const & statements = level.definitions.block.elements;
    for (ElementStatement const & statement : statements) {
      Count(statement, level);
      if (statement.kind == 'x')
        Instantiate(statement, level);
      else if (statement.kind != 'k')
        Add(statement, level);
    }
    for (ElementStatement const & statement : statements) {
      if (statement.kind == 'k')
        Couple(statement, level);
      else if (statement.kind == 'f' || statement.kind == 'h')
        Control(statement, level);
    }
  }

  void Count(ElementStatement const & statement, Level const & level) {
    if (++m_Count > MOST_ELEMENTS)
      throw NetlistError(statement.where, level.path + statement.name, "the circuit has more than 1000000 elements",
                         "do subcircuits multiply more than they should?");
  }

  int NodeIndex(std::string const & name, Level const & level) {
    std::string const folded = Folded(name);
    if (folded == "0" || folded == "gnd")
      return 0;
    auto const formal = level.nodes.find(folded);
    if (formal != level.nodes.end())
      return formal->second;
    std::string const path = m_Content.globalNodes.count(folded) ? "" : level.path;
    // The path is set off by a character that no name holds: a top node `x1.a` is not node a of X1.
    auto const [found, added] = m_NodeIndex.emplace(Folded(path) + '\n' + folded, m_Parts.nodeNames.size());
    if (added)
      m_Parts.nodeNames.push_back(path + name);
    return static_cast<int>(found->second);
  }

  void Add(ElementStatement const & statement, Level & level) {
    Element element;
    element.name = level.path + statement.name;
    element.where = statement.where;
    std::optional<int> portNumber;
    if (statement.kind == 'n')
      AddNetwork(statement, level, element);
    else {
      portNumber = EvaluateElement(statement, level.scope, element);
      for (std::size_t i = 0; i < statement.nodes.size(); ++i)
        element.nodes[i] = NodeIndex(statement.nodes[i], level);
    }
    int const index = static_cast<int>(m_Parts.elements.size());
    if (portNumber)
      m_Parts.ports.push_back({*portNumber, element.name, element.value, index});
    level.elements.emplace(Folded(statement.name), index);
    m_Parts.elements.push_back(std::move(element));
  }

  // The node behind those of the ports is what they count from; without one that is ground.
  void AddNetwork(ElementStatement const & statement, Level & level, Element & element) {
    Network network;
    network.file = statement.references[0];
    network.data = statement.data;
    for (std::string const & node : statement.nodes)
      network.nodes.push_back(NodeIndex(node, level));
    if (network.nodes.size() > statement.data->Ports()) {
      network.reference = network.nodes.back();
      network.nodes.pop_back();
    }
    element.kind = Element::Kind::Network;
    element.control = static_cast<int>(m_Parts.networks.size());
    m_Parts.networks.push_back(std::move(network));
  }

  int Referenced(std::string const & name, Level const & level) const {
    auto const found = level.elements.find(Folded(name));
    return found == level.elements.end() ? -1 : found->second;
  }

  void Control(ElementStatement const & statement, Level const & level) {
    std::string const & name = statement.references[0];
    int const control = Referenced(name, level);
    auto const kind = control < 0 ? Element::Kind::Resistor : m_Parts.elements[static_cast<std::size_t>(control)].kind;
    if (kind != Element::Kind::VoltageSource && kind != Element::Kind::Port)
      throw NetlistError(statement.where, level.path + statement.name,
                         "its controlling source '" + name + "' is not a voltage source of this circuit",
                         "name a voltage source of the same (sub)circuit; 'V1 A B 0' measures a current");
    m_Parts.elements[static_cast<std::size_t>(Referenced(statement.name, level))].control = control;
  }

  int Inductor(std::string const & name, ElementStatement const & statement, Level const & level) const {
    int const index = Referenced(name, level);
    if (index < 0 || m_Parts.elements[static_cast<std::size_t>(index)].kind != Element::Kind::Inductor)
      throw NetlistError(statement.where, level.path + statement.name,
                         "it couples '" + name + "', which is not an inductor of this circuit",
                         "name two inductors of the same (sub)circuit");
    if (m_Parts.elements[static_cast<std::size_t>(index)].value <= 0)
      throw NetlistError(statement.where, level.path + statement.name,
                         "it couples '" + name + "', whose inductance is not positive", "give it a positive value");
    return index;
  }

  void Couple(ElementStatement const & statement, Level const & level) {
    Coupling coupling{level.path + statement.name, statement.where, 0, 0, 0};
    coupling.first = Inductor(statement.references[0], statement, level);
    coupling.second = Inductor(statement.references[1], statement, level);
    if (coupling.first == coupling.second)
      throw NetlistError(statement.where, coupling.name, "it couples an inductor to itself", "name two inductors");
    if (!m_Coupled.insert(std::minmax(coupling.first, coupling.second)).second)
      throw NetlistError(statement.where, coupling.name, "its two inductors are coupled already",
                         "remove one of the two couplings");
    coupling.factor = EvaluateCoupling(statement, level.scope, coupling.name);
    m_Parts.couplings.push_back(std::move(coupling));
  }

  void Instantiate(ElementStatement const & statement, Level & level) {
    std::string const name = level.path + statement.name;
    auto const [definition, home] = level.definitions.Find(Folded(statement.references[0]));
    if (!definition)
      throw NetlistError(statement.where, name, "subcircuit '" + statement.references[0] + "' is not defined",
                         "define it with .subckt or include the file that does");
    CheckInstance(statement, name, *definition);
    ParameterScope scope(level.scope);
    DefineParameters(statement, *definition, name, level.scope, scope);
    Level inner{{definition->body, home}, scope, name + ".", {}, {}};
    for (std::size_t i = 0; i < definition->nodes.size(); ++i)
      inner.nodes.emplace(definition->nodes[i], NodeIndex(statement.nodes[i], level));
    m_Open.push_back(definition);
    Expand(inner);
    m_Open.pop_back();
  }

  void CheckInstance(ElementStatement const & statement, std::string const & name,
                     SubcircuitDefinition const & definition) const {
    auto const again = std::find(m_Open.begin(), m_Open.end(), &definition);
    if (again != m_Open.end()) {
      std::string circle;
      for (auto each = again; each != m_Open.end(); ++each)
        circle += (*each)->name + " -> ";
      throw NetlistError(statement.where, name,
                         "subcircuit '" + definition.name + "' contains itself: " + circle + definition.name,
                         "break the circle");
    }
    if (m_Open.size() >= DEEPEST_INSTANCE)
      throw NetlistError(statement.where, name, "instances are nested more than 100 deep", "flatten some of them");
    if (statement.nodes.size() != definition.nodes.size())
      throw NetlistError(statement.where, name,
                         "it has " + std::to_string(statement.nodes.size()) + " nodes, subcircuit '" + definition.name +
                             "' has " + std::to_string(definition.nodes.size()),
                         "connect each node of the subcircuit");
  }

  // Values of the instance are told in the caller's terms, defaults and .param lines in the subcircuit's own.
  static void DefineParameters(ElementStatement const & statement, SubcircuitDefinition const & definition,
                               std::string const & name, ParameterScope & caller, ParameterScope & scope) {
    for (NameAndExpression const & parameter : definition.defaults)
      scope.Define(parameter.folded, parameter.expression, scope);
    for (NameAndExpression const & value : statement.values) {
      if (!scope.DefinesItself(value.folded))
        throw NetlistError(value.expression.Where(), name,
                           "subcircuit '" + definition.name + "' has no parameter '" + value.name + "'",
                           "declare it with a default on the .subckt line or check its spelling");
      scope.Define(value.folded, value.expression, caller);
    }
    for (NameAndExpression const & parameter : definition.body.parameters) {
      if (scope.DefinesItself(parameter.folded))
        throw NetlistError(parameter.expression.Where(), ".param",
                           "parameter '" + parameter.name + "' is also on the line of .subckt " + definition.name,
                           "remove one of the two");
      scope.Define(parameter.folded, parameter.expression, scope);
    }
  }

  NetlistContent const & m_Content;
  Circuit::Parts m_Parts;
  std::unordered_map<std::string, std::size_t> m_NodeIndex;
  std::set<std::pair<int, int>> m_Coupled;
  std::vector<SubcircuitDefinition const *> m_Open;
  std::size_t m_Count = 0;
};

} // namespace

Circuit Elaborate(Netlist const & netlist, Overrides const & overrides) {
  return Elaboration(netlist.Content()).Run(overrides);
}

} // namespace rf
