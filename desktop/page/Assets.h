#pragma once

#include <string_view>

namespace desktop::page {

/// The style sheet and the script of every page, joined from the folder "assets" by the build, and their SHA-256 sums
/// in hexadecimal digits.
struct Assets {
  static std::string_view const kStyle;
  static std::string_view const kStyleSum;
  static std::string_view const kScript;
  static std::string_view const kScriptSum;
};

} // namespace desktop::page
