#include "solutionmanager/transfer/PointLibrary.h"

#include "basekit/diag/Assert.h"
#include "basekit/diag/Debug.h"
#include "basekit/file/LongFileName.h"
#include "solutionmanager/store/SolutionFileManager.h"
#include "viewkit/library/LibraryReader.h"

#include <memory>

namespace {

constexpr wchar_t kCategory[] = L"SolutionManager";
constexpr int kLevel = 1;
constexpr int kExactDigits = 16;
constexpr auto kSuccess = CStreamioLibrary::kLibSuccess;

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

bool PointLibrary::IsRead(LibIOReturn result) const {
  if (result != kSuccess)
    KvroDebug(kCategory, kLevel, L"Error in reading %s for export-design-point: %s\n", m_path, m_library.LastError());
  return result == kSuccess;
}

bool PointLibrary::IsWritten(LibIOReturn result) const {
  if (result != kSuccess)
    KvroDebug(kCategory, kLevel, L"Error in writing %s for export-design-point: %s\n", m_path, m_library.LastError());
  return result == kSuccess;
}

// In the order of the file.
std::optional<std::vector<AString>> PointLibrary::NamesInFile() const {
  library::LibraryReader reader;
  if (reader.OpenAlone(LongFileName(m_path)) != kSuccess) {
    KvroDebug(kCategory, kLevel, L"Error in reading %s for export-design-point: %s\n", m_path, reader.LastError());
    return std::nullopt;
  }
  std::vector<AString> names;
  for (library::LibraryReader::Entry const & entry : reader.List())
    names.push_back(entry.name);
  return names;
}

void PointLibrary::Clear() { IsWritten(m_library.ClearLibrary()); }

void PointLibrary::Save(io::CBlock & block) {
  if (m_library.SaveDefinition(block) != kSuccess)
    KvroDebug(kCategory, kLevel, L"Error in saving block %s in %s for export-design-point: %s\n", block.Name(), m_path,
              m_library.LastError());
}

// The map comes behind the blocks that stay, and replacements behind the map: a library knows its blocks by their
// names alone.
void PointLibrary::CutDown(std::set<AString> const & internalNames, io::CBlock & replacements) {
  TakeOut(internalNames);
  auto const left = Replace(replacements);
  WriteAnew();
  if (left.empty())
    return;
  for (auto const & block : left) // There may be room now.
    Save(*block);
  WriteAnew();
}

// A library file holds blocks alone: here is no other child to report.
void PointLibrary::TakeOut(std::set<AString> const & internalNames) {
  AString const & mapName = SolutionFileManager::kRealToInternalBlkName;
  std::vector<AString> goes;
  std::vector<AString> stays;
  std::unique_ptr<io::CBlock> map;
  for (AString const & name : NamesInFile().value_or(std::vector<AString>())) {
    if (AString::MatchNoCase(name, mapName)) {
      KvroDebug(kCategory, kLevel, L"Rewriting BlockMapName block in qsol for export-design-point\n");
      map = std::make_unique<io::CBlock>(NamesWithout(m_files.GetEntries(), internalNames));
      if (name != mapName)
        goes.push_back(name);
    } else if (internalNames.contains(name)) {
      KvroDebug(kCategory, kLevel, L"Deleting block %s from qsol for export-design-point\n", name);
      goes.push_back(name);
    } else {
      stays.push_back(name);
    }
  }
  bool const isOut = IsWritten(m_library.DeleteBlocks(goes)) && (!map || IsWritten(m_library.SaveDefinition(*map)));
  if (!isOut)
    KeepOnly(stays, map.get());
}

// Bytes are copied; where that fails, as a block is damaged or there is no room for a second file, those that can be
// read are written.
void PointLibrary::WriteAnew() {
  if (IsWritten(m_library.RewriteLibrary(false)))
    return;
  if (auto const names = NamesInFile())
    KeepOnly(*names, nullptr);
}

// What stays is held in memory meanwhile.
void PointLibrary::KeepOnly(std::vector<AString> const & names, io::CBlock const * map) {
  io::CBlock keep;
  for (AString const & name : names) {
    io::CBlock_ptr<io::CBlock> const block(new io::CBlock(name));
    if (IsRead(m_library.LoadDefinition(*block)))
      keep << block;
  }
  if (map)
    keep << *map;
  if (IsWritten(m_library.ClearLibrary()))
    IsWritten(m_library.SaveBlocks(keep));
}

std::vector<io::CBlock_ptr<io::CBlock>> PointLibrary::Replace(io::CBlock & blocks) {
  std::vector<io::CBlock_ptr<io::CBlock>> left;
  for (auto const & item : blocks) {
    io::CBlock_ptr<io::CBlock> const block(item);
    KVRO_ASSERT(block);
    if (!block)
      continue;
    AString const internalName = m_files.GetInternalBlockName(block->Name());
    KvroDebug(kCategory, kLevel, L"Replacing block %s in qsol for export-design-point\n", internalName);
    block->Name(internalName);
    if (m_library.SaveDefinition(*block) != kSuccess)
      left.push_back(block);
  }
  return left;
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
