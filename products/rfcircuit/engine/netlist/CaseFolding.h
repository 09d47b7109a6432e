#pragma once

#include <string>
#include <string_view>

namespace rf {

/** Names of netlists differ by more than case; only ASCII letters fold, whatever the locale. */
inline char Folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

inline std::string Folded(std::string_view text) {
  std::string folded(text);
  for (char & c : folded)
    c = Folded(c);
  return folded;
}

inline bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
inline bool IsDigit(char c) { return c >= '0' && c <= '9'; }
inline bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\v' || c == '\f' || c == '\r'; }

} // namespace rf
