#include "solutionmanager/transfer/PointLibrary.h"

#include "basekit/diag/Assert.h"
#include "basekit/diag/Debug.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "solutionmanager/store/SolutionFileManager.h"
#include "viewkit/library/LibraryReader.h"

#include <memory>

namespace {

constexpr wchar_t kCategory[] = L"SolutionManager";
constexpr int kLevel = 1;
constexpr int kExactDigits = 16;
constexpr auto kSuccess = CStreamioLibrary::kLibSuccess;

// In the order of the file.
std::vector<AString> NamesIn(AString const & path) {
  std::vector<AString> names;
  library::LibraryReader reader;
  if (reader.OpenAlone(LongFileName(path)) != kSuccess)
    return names;
  for (library::LibraryReader::Entry const & entry : reader.List())
    names.push_back(entry.name);
  return names;
}

io::CBlock NamesWithout(SolutionFileManager::NameMap const & entries, std::set<AString> const & internalNames) {
  io::CBlock block(SolutionFileManager::kRealToInternalBlkName);
  for (auto const & [realName, entry] : entries) {
    if (!internalNames.contains(entry.internalName))
      block << io::CBlock_named_value(realName, entry.internalName);
    else
      KvroDebug(kCategory, kLevel, L"Deleting Entry %s=%s from BlockMapName for export-design-point\n", realName,
                entry.internalName);
  }
  return block;
}

} // namespace

PointLibrary::PointLibrary(SolutionFileManager const & files, AString const & path) : m_files(files), m_path(path) {
  m_library.SetLibPath(path);
  m_library.SetPrecision(kExactDigits);
}

void PointLibrary::Clear() { m_library.ClearLibrary(); }

void PointLibrary::Save(io::CBlock & block) {
  if (m_library.SaveDefinition(block) != kSuccess)
    KvroDebug(kCategory, kLevel, L"Error in saving block %s in %s for export-design-point\n", block.Name(), m_path);
}

std::set<AString> PointLibrary::InternalNamesOf(io::CBlock const & blocks) const {
  std::set<AString> names;
  // Another item replaces nothing: what bears its name stays.
  for (auto const & item : blocks)
    if (item->IsBlock())
      names.insert(m_files.GetInternalBlockName(item->Name()));
  return names;
}

void PointLibrary::TakeOut(std::set<AString> const & internalNames, io::CBlock const & replacements) {
  std::set<AString> const replaced = InternalNamesOf(replacements);
  std::vector<AString> names;
  std::unique_ptr<io::CBlock> map;
  for (AString const & name : NamesIn(m_path)) {
    if (AString::MatchNoCase(name, SolutionFileManager::kRealToInternalBlkName)) {
      KvroDebug(kCategory, kLevel, L"Rewriting BlockMapName block in qsol for export-design-point\n");
      map = std::make_unique<io::CBlock>(NamesWithout(m_files.GetEntries(), internalNames));
    } else if (internalNames.contains(name)) {
      KvroDebug(kCategory, kLevel, L"Deleting block %s from qsol for export-design-point\n", name);
    } else if (!replaced.contains(name)) {
      continue;
    }
    names.push_back(name);
  }
  m_library.DeleteBlocks(names);
  WriteAnew();
  if (map)
    Save(*map);
}

// Bytes are copied; where one of the blocks is damaged, those that can be read are written.
void PointLibrary::WriteAnew() {
  if (m_library.RewriteLibrary(false) == kSuccess)
    return;
  KvroDebug(kCategory, kLevel, L"Error in writing %s for export-design-point: %s\n", m_path, m_library.LastError());
  io::CBlock keep;
  m_library.LoadBlocks(keep, false);
  m_library.ClearLibrary();
  m_library.SaveBlocks(keep);
}

void PointLibrary::Replace(io::CBlock & blocks) {
  for (auto const & item : blocks) {
    io::CBlock_ptr<io::CBlock> const block(item);
    KVRO_ASSERT(block);
    if (!block)
      continue;
    AString const internalName = m_files.GetInternalBlockName(block->Name());
    KvroDebug(kCategory, kLevel, L"Replacing block %s in qsol for export-design-point\n", internalName);
    block->Name(internalName);
    Save(*block);
  }
}

void PointLibrary::Fill(io::CBlock & blocks) {
  std::set<AString> names;
  for (auto const & item : blocks) {
    io::CBlock_ptr<io::CBlock> const block(item);
    KVRO_ASSERT(block);
    if (!block)
      continue;
    names.insert(block->Name());
    block->Name(m_files.GetInternalBlockName(block->Name()));
    Save(*block);
  }
  io::CBlock map(SolutionFileManager::kRealToInternalBlkName);
  // A product may hand blocks out under internal names, too.
  for (auto const & [realName, entry] : m_files.GetEntries())
    if (names.contains(realName) || names.contains(entry.internalName))
      map << io::CBlock_named_value(realName, entry.internalName);
  Save(map);
}
