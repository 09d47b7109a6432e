#include "apps/solvedesk/ScriptLine.h"

#include "desktop/Error.h"

namespace solvedesk {

std::vector<std::string> WordsOfLine(std::string const & line) {
  std::vector<std::string> words;
  bool isInWord = false;
  char quote = '\0';
  for (char const c : line) {
    bool const isBlank = c == ' ' || c == '\t' || c == '\r';
    if (quote == '\0' && (isBlank || (c == '#' && !isInWord))) {
      if (c == '#')
        break;
      isInWord = false;
      continue;
    }
    if (!isInWord)
      words.emplace_back();
    isInWord = true;
    if (quote == '\0' && (c == '"' || c == '\''))
      quote = c;
    else if (c == quote)
      quote = '\0';
    else
      words.back() += c;
  }
  if (quote != '\0')
    throw desktop::Error(desktop::ErrorKind::kUsage, L"a quote is not closed; write it at both ends of the word");
  return words;
}

} // namespace solvedesk
