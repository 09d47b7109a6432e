#include "products/command/source/LineWords.h"

namespace command {

bool SplitWords(std::string_view line, bool partsAtEquals, std::vector<std::string> & words, std::string & problem) {
  words.clear();
  bool isOpen = false; // a word is being read
  for (std::size_t at = 0; at < line.size(); ++at) {
    char const c = line[at];
    if (c == ' ' || c == '\t' || c == '\r') {
      isOpen = false;
      continue;
    }
    if (c == '=' && partsAtEquals) {
      words.emplace_back("=");
      isOpen = false;
      continue;
    }
    if (!isOpen)
      words.emplace_back();
    isOpen = true;
    if (c != '"') {
      words.back() += c;
      continue;
    }
    for (++at; at < line.size() && line[at] != '"'; ++at) {
      bool const isEscape = line[at] == '\\' && at + 1 < line.size() && (line[at + 1] == '"' || line[at + 1] == '\\');
      words.back() += line[isEscape ? ++at : at];
    }
    if (at >= line.size()) {
      problem = "a quote is not closed on its line";
      return false;
    }
  }
  return true;
}

std::string QuotedWhereNeeded(std::string const & word) {
  if (!word.empty() && word.find_first_of(" \t\r\"\\=") == std::string::npos)
    return word;
  std::string quoted = "\"";
  for (char const c : word) {
    if (c == '"' || c == '\\')
      quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

} // namespace command
