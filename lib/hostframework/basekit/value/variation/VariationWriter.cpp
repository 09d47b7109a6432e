#include "basekit/value/variation/VariationReader.h"
#include "basekit/value/variation/VariationText.h"

#include <algorithm>

namespace variation {

namespace {

bool IsPlain(wchar_t c) {
  bool const letterOrDigit = (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9');
  return letterOrDigit || c == L'_' || c == L'.' || c == L'+' || c == L'-' || c == L'$' || c == L'%' ||
         (c > 0x9f && !IsSpace(c));
}

void AppendPart(std::wstring & out, std::wstring_view part) {
  if (!part.empty() && std::all_of(part.begin(), part.end(), IsPlain)) {
    out += part;
    return;
  }
  out += L'"';
  for (wchar_t const c : part) {
    if (wchar_t const letter = c == L'\n' ? L'n' : c == L'\r' ? L'r' : c == L'\t' ? L't' : 0; letter)
      out.append({L'\\', letter});
    else if (c == L'"' || c == L'\\')
      out.append({L'\\', c});
    else
      out += c;
  }
  out += L'"';
}

} // namespace

void Writer::Add(std::wstring_view name, std::wstring_view value) {
  if (!m_text.empty())
    m_text += L"; ";
  AppendPart(m_text, name);
  m_text += L'=';
  AppendPart(m_text, value);
}

AString Writer::Take() {
  AString const text(m_text);
  m_text.clear();
  return text;
}

} // namespace variation
