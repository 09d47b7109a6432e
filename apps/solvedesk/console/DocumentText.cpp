#include "apps/solvedesk/console/DocumentText.h"

#include "apps/solvedesk/console/Console.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace solvedesk {
namespace {

constexpr int kIndent = 2;

bool IsPlain(wchar_t c) { return c >= 0x20 && c < 0x7f && c != L'"' && c != L'\\'; }

} // namespace

DocumentText::DocumentText() {
  m_text = "{";
  m_depth = 1;
  Number("schema_version", kSchemaVersion);
}

void DocumentText::Text(std::string_view name, AString const & value) {
  if (!std::all_of(value.begin(), value.end(), IsPlain))
    return Value(name, Utf8(value));
  Next(name);
  m_text += '"';
  std::transform(value.begin(), value.end(), std::back_inserter(m_text),
                 [](wchar_t c) { return static_cast<char>(c); });
  m_text += '"';
}

void DocumentText::Flag(std::string_view name, bool value) {
  Next(name);
  m_text += value ? "true" : "false";
}

void DocumentText::Number(std::string_view name, long value) {
  Next(name);
  m_text += std::to_string(value);
}

void DocumentText::Value(std::string_view name, nlohmann::ordered_json const & value) {
  Next(name);
  // Line feeds within texts are escaped.
  for (char const c : value.dump(kIndent))
    if (c == '\n')
      NewLine();
    else
      m_text += c;
}

void DocumentText::Members(nlohmann::ordered_json const & object) {
  for (auto const & [name, value] : object.items())
    Value(name, value);
}

std::string DocumentText::Take() && {
  End('}');
  return std::move(m_text);
}

void DocumentText::Begin(std::string_view name, char bracket) {
  Next(name);
  m_text += bracket;
  ++m_depth;
  m_isFirst = true;
}

void DocumentText::End(char bracket) {
  --m_depth;
  if (!m_isFirst)
    NewLine();
  m_isFirst = false;
  m_text += bracket;
}

void DocumentText::Next(std::string_view name) {
  if (!m_isFirst)
    m_text += ',';
  m_isFirst = false;
  NewLine();
  if (!name.empty())
    m_text.append("\"").append(name).append("\": ");
}

void DocumentText::NewLine() {
  m_text += '\n';
  m_text.append(m_depth * kIndent, ' ');
}

} // namespace solvedesk
