#include "apps/solvedesk/console/WordList.h"

#include "apps/solvedesk/console/Console.h"
#include "desktop/Error.h"

#include <algorithm>

namespace solvedesk {

std::vector<AString> WordList(std::vector<std::string> const & words, AString const & where) {
  using desktop::Error;
  std::vector<AString> names;
  for (std::string const & word : words) {
    AString const text = ArgumentText(word);
    for (std::size_t begin = 0; begin <= text.size();) {
      std::size_t const end = std::min(text.find(L',', begin), text.size());
      AString const name = text.substr(begin, end - begin).Trimmed();
      auto const isSame = [&name](AString const & other) { return AString::MatchNoCase(other, name); };
      if (name.empty())
        throw Error(desktop::ErrorKind::kUsage, where + L" '" + text +
                                                    L"': holds an empty name; write names with "
                                                    L"commas between them");
      if (std::any_of(names.begin(), names.end(), isSame))
        throw Error(desktop::ErrorKind::kUsage, where + L" " + name + L": is given twice; give it once");
      names.push_back(name);
      begin = end + 1;
    }
  }
  return names;
}

} // namespace solvedesk
