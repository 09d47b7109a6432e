#include "apps/qsol/FileNames.h"

#include "apps/qsol/Text.h"

#include <fmt/format.h>

#include <string_view>

namespace qsol {

namespace {

/// What all file systems take, with room for a suffix.
constexpr std::size_t kLongest = 200;

bool StandsForItself(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         std::string_view("._-=+, ()").find(c) != std::string_view::npos;
}

// Two runs of FNV-1a, unlike in their start.
std::string HashOf(std::string_view bytes) {
  std::uint64_t one = 0xcbf29ce484222325;
  std::uint64_t two = 0x84222325cbf29ce4;
  for (char const c : bytes) {
    one = (one ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    two = (two ^ static_cast<unsigned char>(c) ^ 0x5a) * 0x100000001b3;
  }
  return Hex(one) + Hex(two);
}

} // namespace

std::string FileNameOf(AString const & name) {
  // Codes that are no characters must stay apart, so they are spelled out before UTF-8 replaces them.
  std::string bytes;
  for (wchar_t const c : name) {
    auto const code = static_cast<unsigned long>(c);
    bool const isCharacter = code < 0xd800 || (code >= 0xe000 && code <= 0x10ffff);
    bytes += isCharacter ? Utf8(AString(std::wstring_view(&c, 1))) : fmt::format("\xff{:x}\xff", code);
  }
  std::string escaped;
  for (char const c : bytes)
    if (StandsForItself(c) && !(escaped.empty() && (c == '.' || c == '-' || c == ' ')))
      escaped += c;
    else
      escaped += fmt::format("%{:02X}", static_cast<unsigned char>(c));
  if (escaped.empty())
    return "%";
  if (escaped.size() <= kLongest)
    return escaped;
  std::string const hash = HashOf(bytes);
  return escaped.substr(0, kLongest - hash.size() - 1) + "~" + hash;
}

} // namespace qsol
