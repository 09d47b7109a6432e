#include "basekit/value/Variable.h"

namespace {

bool IsWordCharacter(wchar_t c) {
  return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'_' || c == L'$' ||
         c >= 0x80;
}

} // namespace

Variable::Variable(AString const & name, AString const & valueText, Units::FullUnitType units)
    : m_name(name), m_value(units) {
  m_value.SetConstantText(valueText, units);
}

Variable::Variable(AString const & name, Value const & value) : m_name(name), m_value(value) {}

bool Variable::UsesVariable(Variable const & variable) const {
  if (!m_value.IsText())
    return false;
  AString const text = m_value.GetText();
  bool quoted = false;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at;
    while (end < text.size() && IsWordCharacter(text[end]))
      ++end;
    if (!quoted && end > at && AString::MatchNoCase(text.substr(at, end - at), variable.GetName()))
      return true;
    if (end == at && text[end++] == L'"')
      quoted = !quoted;
    at = end;
  }
  return false;
}
