#include "apps/solvedesk/results/RecordChoice.h"

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/project/OpenProject.h"
#include "basekit/io/CBlock.h"
#include "basekit/value/VariableValues.h"
#include "desktop/Error.h"
#include "desktop/product/ProductSolutionManager.h"
#include "solutionmanager/address/PackedKeyText.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

#include <CLI/CLI.hpp>

#include <list>
#include <map>

namespace solvedesk {
namespace {

using desktop::ErrorKind;

struct Named {
  AString variation;
  AString realName;
};

bool IsWanted(SolutionVariationKey const & key, std::optional<AString> const & variation) {
  return !variation || VariableValues::AreVariationKeysEqual(*variation, key.GetDesignVariationKey());
}

/// By the IDs of their setups, in the order of the library.
std::map<long, std::vector<Named>> FindRecords(desktop::Session & session, long kind,
                                               std::vector<BaseSimulationSetup *> const & setups,
                                               std::optional<AString> const & variation) {
  std::map<long, std::vector<Named>> records;
  for (BaseSimulationSetup const * const setup : setups)
    records[setup->GetID()];
  std::list<AString> names;
  session.GetManager().GetSolutionFileManager().IndexKeyList(names, false);
  for (AString const & name : names) {
    SolutionVariationKey key;
    if (!UnpackQuickly(name, key) || key.GetSolutionKey() != kind)
      continue;
    auto const at = records.find(key.GetSimSetupKey());
    auto const * const setup =
        at == records.end() ? nullptr : session.GetManager().GetISimulationSetupByID(at->first, false, false);
    if (setup && setup->GetVersionID() == key.GetVersionIDKey() && IsWanted(key, variation))
      at->second.push_back({key.GetDesignVariationKey(), name});
  }
  return records;
}

std::optional<AString> VariationOf(RecordWords const & words) {
  if (!words.variation)
    return {};
  AString const text = ArgumentText(*words.variation);
  if (text.Trimmed().empty())
    throw desktop::Error(ErrorKind::kUsage, L"--variation: names no variation; `info` lists them");
  return text;
}

} // namespace

void AddRecordWords(CLI::App & verb, RecordWords & words) {
  AddProjectWord(verb, words.project);
  verb.add_option("--setup", words.setups, "a setup; all of them without this")->allow_extra_args(false);
  verb.add_option("--variation", words.variation, "one variation, as `info` shows it");
}

int ForEachRecord(desktop::Session & session, RecordWords const & words, long kind,
                  std::function<bool(RecordOfSolve const &)> const & visit) {
  auto const setups = ChooseSetups(session, words.setups);
  auto const variation = VariationOf(words);
  auto const records = FindRecords(session, kind, setups, variation);
  std::size_t count = 0;
  int code = 0;
  for (BaseSimulationSetup * const setup : setups) {
    auto const & ofSetup = records.at(setup->GetID());
    count += ofSetup.size();
    for (Named const & record : ofSetup) {
      io::CBlock block(record.realName);
      bool const isRead = session.GetManager().LoadSingleBlock(block) == CStreamioLibrary::kLibSuccess &&
                          visit({*setup, record.variation, block});
      if (!isRead) {
        PrintMessage(Utf8(setup->GetName() + L" at " + record.variation) +
                     ": the record of its solve can't be read; `qsol verify` tells what is damaged, `solvedesk solve "
                     "--again` makes it anew");
        code = static_cast<int>(ErrorKind::kProject);
      }
      setup->ForgetRecords(record.variation, setup->GetVersionID());
    }
  }
  if (count == 0 && variation)
    throw desktop::Error(ErrorKind::kUsage, L"--variation '" + *variation +
                                                L"': no solve of an equal one left such a record; `info` lists the "
                                                L"variations");
  return code;
}

} // namespace solvedesk
