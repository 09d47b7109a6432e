// A private library file that a crash left: whether it can be taken over, and doing so.

#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_named_value.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CToken_istream.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/recovery/NameMapMerge.h"
#include "solutionmanager/recovery/RecoveryFacts.h"

#include <unordered_set>

using recovery::NamePairs;

namespace {

using Failure = RecoveryReport::Failure;

constexpr int kReadFlags = 1;
constexpr int kQuickIndex = 1;

} // namespace

bool BaseSolutionManager::CanRecoverSolutions() const {
  if (IsQsolLibraryInitialized())
    return false;
  LongFileName const privateFile(GetQsolPath() + L"_priv");
  if (!LFN_Exists(privateFile))
    return false;
  io::CToken_istream stream(privateFile, kReadFlags);
  stream.BuildIndex(kQuickIndex);
  return stream.BlockSeek(SolutionFileManager::kRealToInternalBlkName);
}

namespace {

/// Names that lead to a block which is about to reach the public file.
std::vector<AString> NamesOf(std::vector<AString> const & internalNames, NamePairs const & pairs) {
  std::unordered_set<std::wstring_view> wanted;
  for (AString const & name : internalNames)
    wanted.insert(name.View());
  std::vector<AString> realNames;
  for (auto const & [realName, internalName] : pairs)
    if (wanted.contains(internalName.View()))
      realNames.push_back(realName);
  return realNames;
}

/// One takeover: the steps, and what is to be told about them.
class Takeover {
public:
  Takeover(BaseSolutionManager & manager, RecoveryReport & report)
      : m_manager(manager), m_files(manager.GetSolutionFileManager()), m_report(report) {}

  Failure Run(io::CBlock const & designBlock, AString const & path) {
    NamePairs privatePairs;
    bool const ok = ReadMaps(path, privatePairs);
    m_files.SetLibPath(path, CStreamioLibrary::kRecoveryMode);
    if (!m_manager.IsRecovered())
      return Failure::kFileRefused;
    if (!ok)
      return Failure::kNameMapDamaged;
    m_privatePairs = std::move(privatePairs);
    Extend();
    m_files.InitNextAvailableIndex();
    if (m_files.WriteRealToInternalBlockNameMap() != CStreamioLibrary::kLibSuccess)
      return Failure::kNotWritten;
    Commit();
    DropLostNames();
    m_manager.BuildUtilityCollections();
    if (m_manager.ReadAllDefinitionBlocks() != io::kNoError)
      return Failure::kDefinitionsDamaged;
    m_manager.RecoverVersionConsistency(designBlock);
    return Failure::kNone;
  }

private:
  // As RecoverQsolBlockNameMap does, by names alone.
  bool ReadMaps(AString const & path, NamePairs & privatePairs) {
    io::CBlock publicMap(SolutionFileManager::kRealToInternalBlkName);
    io::CBlock privateMap(SolutionFileManager::kRealToInternalBlkName);
    bool const publicIsGood = recovery::ReadNameMap(path, publicMap);
    if (!recovery::ReadNameMap(AString::Format(L"%s_priv", path), privateMap) || !publicIsGood)
      return false;
    m_kept = recovery::PairsOf(publicMap);
    privatePairs = recovery::PairsOf(privateMap);
    for (auto at = m_kept.begin(); auto const & pair : privatePairs)
      at = std::next(m_kept.insert(at, pair)); // both are in order
    return true;
  }

  void Extend() {
    auto const & library = m_files.GetLibraryForDirectAccess();
    for (AString const & lost : recovery::DropLostBlocks(m_kept, m_privatePairs, library))
      NoteLost(lost);
    m_files.NoteNameMapWasRead();
    for (auto const & [realName, internalName] : m_kept)
      m_files.ExtendNameMap(realName, internalName);
    m_report.realNames = NamesOf(library.UncommittedBlocks(), m_kept);
  }

  // A map that the private file holds is whole and the younger one: what it lacks was taken out of it.
  void NoteLost(AString const & realName) {
    bool const isGone = !m_privatePairs.empty() && !m_privatePairs.contains(realName);
    m_report.dropped.push_back(
        {realName, isGone ? RecoveryReport::Reason::kNameGone : RecoveryReport::Reason::kBlockLost});
  }

  void Commit() {
    auto const result = m_files.UpdateOriginal();
    m_report.isCommitted = result == CStreamioLibrary::kLibSuccess || result == CStreamioLibrary::kLibDamaged;
  }

  // A name without a block would pass for solved data that nobody can load.
  void DropLostNames() {
    auto const & library = m_files.GetLibraryForDirectAccess();
    std::set<AString> lost;
    for (auto const & [realName, internalName] : m_kept)
      if (!library.HasBlock(internalName))
        lost.insert(realName);
    if (lost.empty())
      return;
    for (AString const & realName : lost)
      NoteLost(realName);
    m_files.DeleteBlocks(lost);
    Commit();
  }

  BaseSolutionManager & m_manager;
  SolutionFileManager & m_files;
  RecoveryReport & m_report;
  NamePairs m_privatePairs;
  NamePairs m_kept;
};

} // namespace

bool BaseSolutionManager::RecoverQsolFile(io::CBlock const & designBlock, AString const & path) {
  *m_RecoveryReport = RecoveryReport();
  // The definitions are read twice, as each of the two steps that do so reads them.
  m_IsOpening = true;
  m_RecoveryReport->failure = Takeover(*this, *m_RecoveryReport).Run(designBlock, path);
  m_IsOpening = false;
  m_HeaderAtHand.reset();
  bool const isDone = m_RecoveryReport->failure == Failure::kNone;
  m_RecoveryReport->outcome = isDone ? RecoveryReport::Outcome::kTakenOver : RecoveryReport::Outcome::kFailed;
  recovery::CountTakenOver(*m_RecoveryReport, m_SimSetupMap);
  return isDone;
}

bool BaseSolutionManager::RecoverQsolBlockNameMap(AString const & path, io::CBlock & block) const {
  bool const ok = recovery::ReadNameMap(path, block);
  // The private file is looked at all the same: a failure there is one, too.
  io::CBlock privateMap(block.Name());
  if (!recovery::ReadNameMap(AString::Format(L"%s_priv", path), privateMap) || !ok)
    return false;
  // Where the two disagree the public one wins; the private one only adds.
  NamePairs known = recovery::PairsOf(block);
  for (auto const & child : privateMap) {
    io::CBlock_ptr<io::CBlock_named_value> const pair(child);
    if (pair && known.emplace(pair->Name(), AString()).second)
      block << *pair;
  }
  return true;
}
