#include "products/command/product/SettingsBlock.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/Utf8.h"
#include "products/command/source/LineWords.h"

namespace command {
namespace {

wchar_t const * const kCount = L"Given";
wchar_t const * const kSetting = L"Setting";
wchar_t const * const kName = L"Name";
wchar_t const * const kText = L"Text";
constexpr char const * kNone = "default";

} // namespace

void WriteSettings(io::CBlock & block, HoleValues const & settings) {
  block << io::named(kCount, static_cast<long>(settings.size()));
  for (auto const & [name, text] : settings) {
    io::CBlock_func item(kSetting);
    item << io::named(kName, text::FromUtf8(name)) << io::named(kText, text::FromUtf8(text));
    block << item;
  }
}

HoleValues ReadSettings(io::CBlock const & block) {
  HoleValues settings;
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock_func> const item(child);
    if (!item || !AString::MatchNoCase(item->Name(), kSetting))
      continue;
    AString name;
    AString text;
    *item >> io::named(kName, name) >> io::named(kText, text);
    settings.emplace_back(text::ToUtf8(name), text::ToUtf8(text));
  }
  return settings;
}

bool SettingsOfWords(AString const & words, HoleValues & settings, AString & error) {
  std::vector<std::string> parts;
  std::string problem;
  settings.clear();
  if (!SplitWords(text::ToUtf8(words), true, parts, problem)) {
    error = text::FromUtf8(problem);
    return false;
  }
  if (parts.size() == 1 && parts.front() == kNone)
    return true;
  for (std::size_t i = 0; i < parts.size(); i += 3) {
    bool const isSetting = i + 2 < parts.size() && IsName(parts[i]) && parts[i + 1] == "=" && parts[i + 2] != "=";
    if (!isSetting || FindValue(settings, parts[i])) {
      error = text::FromUtf8("'" + parts[i] + "' " + (isSetting ? "is given twice" : "begins no setting") +
                             "; write NAME=TEXT for each setting of the solver file, or 'default'");
      return false;
    }
    settings.emplace_back(parts[i], parts[i + 2]);
  }
  if (settings.empty())
    error = L"the words are missing; write NAME=TEXT for each setting of the solver file, or 'default'";
  return !settings.empty();
}

AString WordsOfSettings(HoleValues const & settings) {
  std::string words;
  for (auto const & [name, text] : settings)
    words += (words.empty() ? "" : " ") + name + "=" + QuotedWhereNeeded(text);
  return text::FromUtf8(words.empty() ? kNone : words);
}

} // namespace command
