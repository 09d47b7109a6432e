#include "desktop/project/SourceBase.h"

#include "basekit/io/CNamed_value_manip.h"

#include <ctime>

namespace desktop {

namespace {

AString const kFingerprint(L"Fingerprint");
AString const kDate(L"Read");
AString const kVariable(L"Variable");
AString const kSetup(L"Setup");
AString const kSettings(L"Settings");
AString const kName(L"Name");
AString const kValue(L"Value");
AString const kType(L"Type");
AString const kID(L"ID");

AString Now() {
  std::time_t const now = std::time(nullptr);
  std::tm parts{};
  ::gmtime_r(&now, &parts);
  return AString::Format(L"%04d-%02d-%02d %02d:%02d:%02d UTC", parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
                         parts.tm_hour, parts.tm_min, parts.tm_sec);
}

bool ReadVariable(io::CBlock_func const & item, SourceVariable & variable) {
  item >> io::named(kName, variable.name) >> io::named(kValue, variable.value);
  return item.Found() && !variable.name.empty();
}

bool ReadSetup(io::CBlock const & block, SourceBase::Setup & setup) {
  block >> io::named(kName, setup.said.name) >> io::named(kType, setup.said.typeName) >> io::named(kID, setup.id);
  bool const isNumbered = block.Found();
  io::CBlock settings(kSettings);
  block >> settings;
  setup.said.settings = settings;
  return isNumbered && block.Found();
}

} // namespace

SourceBase SourceBase::Of(SourceDescription const & description, SourceFiles const & files) {
  SourceBase base;
  base.fingerprint = description.fingerprint;
  if (base.fingerprint.empty())
    for (SourceFile const & file : files)
      base.fingerprint +=
          AString::Format(L"%x-%x;", static_cast<unsigned long>(file.size), static_cast<unsigned long>(file.checksum));
  base.date = Now();
  base.variables = description.variables;
  for (SourceSetup const & setup : description.setups)
    base.setups.push_back({setup, -1});
  return base;
}

void WriteSourceBase(SourceBase const & base, io::CBlock & block) {
  block << io::named(kFingerprint, base.fingerprint) << io::named(kDate, base.date);
  for (SourceVariable const & variable : base.variables) {
    io::CBlock_func item(kVariable);
    item << io::named(kName, variable.name) << io::named(kValue, variable.value);
    block << item;
  }
  for (SourceBase::Setup const & setup : base.setups) {
    io::CBlock setupBlock(kSetup);
    setupBlock << io::named(kName, setup.said.name) << io::named(kType, setup.said.typeName) << io::named(kID, setup.id)
               << setup.said.settings;
    block << setupBlock;
  }
}

bool ReadSourceBase(io::CBlock const & block, SourceBase & base) {
  block >> io::named(kDate, base.date); // Not in older files.
  block >> io::named(kFingerprint, base.fingerprint);
  if (!block.Found())
    return false;
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock_func> const item(child);
    io::CBlock_ptr<io::CBlock> const setupBlock(child);
    if (item && item->Name() == kVariable) {
      base.variables.emplace_back();
      if (!ReadVariable(*item, base.variables.back()))
        return false;
    } else if (setupBlock && setupBlock->Name() == kSetup) {
      base.setups.emplace_back();
      if (!ReadSetup(*setupBlock, base.setups.back()))
        return false;
    }
  }
  return true;
}

} // namespace desktop
