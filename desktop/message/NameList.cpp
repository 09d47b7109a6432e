#include "desktop/message/NameList.h"

#include "desktop/message/NearestNames.h"

namespace desktop {
namespace {

constexpr std::size_t kLongest = 60;
constexpr std::size_t kAll = 12; ///< so many are told without a choice
constexpr std::size_t kSome = 5;

} // namespace

AString ShortName(AString const & name) { return name.size() <= kLongest ? name : name.substr(0, kLongest) + L"..."; }

AString NameList(std::vector<AString> const & names, AString const & sought) {
  if (names.empty())
    return L"none";
  std::vector<AString> told = names;
  if (names.size() > kAll) {
    told = sought.empty() ? std::vector<AString>() : NearestNames(sought, names);
    if (told.empty())
      told.assign(names.begin(), names.begin() + kSome);
  }
  AString text;
  for (AString const & name : told)
    text += (text.empty() ? AString() : AString(L", ")) + ShortName(name);
  if (told.size() < names.size())
    text += AString::Format(L" and %ld others", static_cast<long>(names.size() - told.size()));
  return text;
}

} // namespace desktop
