// Names: quantities, user variables with definitions of their own, and constants.

#include "basekit/value/expression/Compiler.h"
#include "basekit/value/expression/Constants.h"
#include "basekit/value/expression/Suggestion.h"
#include "basekit/value/expression/SyntaxParser.h"

#include <algorithm>

namespace expr {

bool Compiler::FindMeaning(AString const & name, Node const & node, Typed & result) {
  std::wstring const key(name.View());
  if (auto const known = m_known.find(key); known != m_known.end()) {
    result = known->second;
    return true;
  }
  Meaning const meaning = m_scope.Find(name);
  double constant = 0.0;
  switch (meaning.kind) {
  case Meaning::Kind::kQuantity: {
    val::ParameterType const type = meaning.state.parameterType;
    if (type == val::kText || type == val::kNotAQuantity)
      return Fail(node, L"'" + name + L"' has no number", L"a quantity or a variable with one");
    result = AddQuantity(name, meaning, node);
    break;
  }
  case Meaning::Kind::kDefinition:
    if (!CompileDefinition(name, meaning.text, node, result))
      return false;
    AddBase(meaning.base);
    break;
  case Meaning::Kind::kUnknown:
    if (!FindConstant(name.View(), constant))
      return Fail(node, L"'" + name + L"' is not known", L"", SuggestionFor(name.View(), m_scope.KnownNames()));
    result.operand = AddConstant(constant, false);
    break;
  }
  m_known.emplace(key, result);
  return true;
}

Compiler::Typed Compiler::AddQuantity(AString const & name, Meaning const & meaning, Node const & node) {
  AddBase(meaning.base);
  m_program.m_quantities.push_back({name, meaning.state, meaning.base, node.position, node.length, m_error.source});
  val::ParameterType const basic = postp::GetBasicParamType(meaning.state.parameterType);
  Typed value;
  value.operand = {Operand::Kind::kQuantity, basic == val::kComplex,
                   static_cast<std::uint32_t>(m_program.m_quantities.size() - 1)};
  value.unit = meaning.state.fullUnit;
  value.type = basic;
  value.isArray = ValueParamTypes::IsParameterTypeArray(meaning.state.parameterType);
  return value;
}

void Compiler::AddBase(ValueBase const * base) {
  if (base && m_bases.insert(base).second)
    m_program.m_bases.push_back(base);
}

bool Compiler::CompileDefinition(AString const & name, AString const & text, Node const & node, Typed & result) {
  auto const same = [&](AString const & other) { return AString::MatchNoCase(other, name); };
  if (auto const first = std::find_if(m_path.begin(), m_path.end(), same); first != m_path.end()) {
    AString circle;
    for (auto at = first; at != m_path.end(); ++at)
      circle += *at + L" -> ";
    return Fail(node, L"the definitions go round in a circle: " + circle + name, L"",
                L"change one of these definitions");
  }
  if (m_path.size() >= static_cast<std::size_t>(maxNesting))
    return Fail(node, L"the definitions lead too deep", L"");
  AString const outer = m_error.source;
  m_path.push_back(name);
  bool const isCompiled = CompileText(text, result);
  m_path.pop_back();
  if (isCompiled)
    m_error.source = outer;
  else
    TellWay(name, node);
  return isCompiled;
}

// The error stands in the definition; the text that was handed in leads to it by the names of the path.
void Compiler::TellWay(AString const & name, Node const & node) {
  if (m_wayTo.empty())
    m_wayTo = L"'" + name + L"'";
  else
    m_wayTo = L"'" + name + L"' -> " + m_wayTo;
  if (m_path.empty())
    m_error.problem = AString::Format(L"in the definition of %s, which character %lu leads to: ", m_wayTo,
                                      static_cast<unsigned long>(node.position + 1)) +
                      m_error.problem;
}

} // namespace expr
