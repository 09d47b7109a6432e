#include "apps/solvedesk/transfer/FileNames.h"

#include <algorithm>
#include <string_view>

namespace solvedesk {
namespace {

constexpr std::size_t kLongest = 120;

bool IsPlain(char c) {
  bool const isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  return isLetter || (c >= '0' && c <= '9') || std::string_view("=+-._").find(c) != std::string_view::npos;
}

// Each run of other characters is one underscore; none at the ends.
std::string Sanitised(std::string const & wanted) {
  std::string name;
  for (char const c : wanted) {
    if (IsPlain(c))
      name += c;
    else if (!name.empty() && name.back() != '_')
      name += '_';
  }
  name.resize(std::min(name.size(), kLongest));
  while (!name.empty() && (name.back() == '_' || name.back() == '.'))
    name.pop_back();
  name.erase(0, std::min(name.find_first_not_of("._-"), name.size()));
  return name.empty() ? "result" : name;
}

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return text;
}

} // namespace

std::string FileNames::Make(std::string const & wanted) {
  std::string const base = Sanitised(wanted);
  std::string name = base;
  for (int number = 2; !m_taken.insert(Lower(name)).second; ++number)
    name = base + "_" + std::to_string(number);
  return name;
}

} // namespace solvedesk
