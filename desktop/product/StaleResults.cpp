#include "desktop/product/StaleResults.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_named_value.h"
#include "desktop/Error.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/store/SolutionFileManager.h"
#include "viewkit/library/LibraryReader.h"

#include <algorithm>

namespace desktop {

namespace {

using library::LibraryReader;
constexpr auto kSuccess = CStreamioLibrary::kLibSuccess;
constexpr int kBatch = 256;

template <class Entry> Entry const * FindById(std::vector<Entry> const & entries, long id) {
  auto const at = std::find_if(entries.begin(), entries.end(), [id](Entry const & entry) { return entry.id == id; });
  return at == entries.end() ? nullptr : &*at;
}

// Of an object that the design lacks, or of another version than it has there.
bool IsStale(SolutionVariationKey const & key, std::vector<SetupOfDesign> const & design) {
  SetupOfDesign const * const setup = FindById(design, key.GetSimSetupKey());
  if (!setup)
    return key.GetSimSetupKey() != id::invalidID;
  long current = setup->version;
  if (key.GetSolutionKey() >= 0) {
    SolutionOfDesign const * const solution = FindById(setup->solutions, key.GetSolutionKey());
    if (!solution)
      return true;
    current = solution->version;
  }
  return current != id::invalidID && key.GetVersionIDKey() != current;
}

/// Blocks on their way into a library, some at a time.
template <class Store> class Batches {
public:
  explicit Batches(Store store) : m_store(store) {}
  bool Add(io::CBlock_ptr<io::CBlock> const & block) {
    m_batch << block;
    return ++m_count % kBatch != 0 || Flush();
  }
  bool Flush() {
    bool const isStored = m_batch.Empty() || m_store(m_batch) == kSuccess;
    m_batch = io::CBlock();
    return isStored;
  }
  int Count() const { return m_count; }

private:
  Store m_store;
  io::CBlock m_batch;
  int m_count = 0;
};

} // namespace

StaleResults::StaleResults(AString const & libraryPath)
    : m_libraryPath(libraryPath), m_keptPath(libraryPath + L"_kept") {}

void StaleResults::Keep(std::vector<SetupOfDesign> const & design) const {
  LibraryReader reader;
  io::CBlock names(SolutionFileManager::kRealToInternalBlkName);
  if (reader.Open(LongFileName(m_libraryPath), true) != kSuccess || reader.Load(names) != kSuccess)
    return; // Then the takeover tells what is wrong.
  CStreamioLibWritePrivate kept;
  Batches batches([&kept](io::CBlock & batch) { return kept.SaveBlocks(batch); });
  bool isStored = true;
  for (auto const & child : names) {
    io::CBlock_ptr<io::CBlock_named_value> const pair(child);
    SolutionVariationKey key;
    AString internalName;
    if (!pair || !key.Unpack(pair->Name()) || !IsStale(key, design) || !pair->Query(internalName))
      continue;
    io::CBlock_ptr<io::CBlock> const block(new io::CBlock(internalName));
    if (reader.Load(*block) != kSuccess)
      continue; // A damaged block is none.
    block->Name(pair->Name());
    if (batches.Count() == 0) {
      LFN_DeleteFile(LongFileName(m_keptPath + L"_priv")); // Of an attempt that came to no end.
      kept.SetLibPath(m_keptPath, CStreamioLibrary::kOrdinaryMode);
    }
    isStored = isStored && batches.Add(block);
  }
  if (batches.Count() == 0)
    return;
  isStored = isStored && batches.Flush() && kept.CommitAll(false) == kSuccess;
  if (!isStored)
    throw Error(ErrorKind::kStorage, m_keptPath + L": stale results can't be copied before a takeover (" +
                                         kept.LastError() +
                                         L"); make room or get permission, and open the project "
                                         L"again");
}

void StaleResults::PutBack(SolutionFileManager & library) const {
  LongFileName const file(m_keptPath);
  LibraryReader kept;
  if (!LFN_Exists(file) || kept.Open(file, false) != kSuccess)
    return;
  Batches batches([&library](io::CBlock & batch) { return library.SaveBlocks(batch); });
  bool isStored = true;
  for (auto const & entry : kept.List()) {
    bool isThere = false;
    library.GetInternalBlockName(isThere, entry.name);
    io::CBlock_ptr<io::CBlock> const block(new io::CBlock(entry.name));
    if (!isThere && kept.Load(*block) == kSuccess)
      isStored = batches.Add(block) && isStored;
  }
  isStored = batches.Flush() && isStored;
  if (isStored && (batches.Count() == 0 || library.UpdateOriginal() == kSuccess))
    Drop();
}

bool StaleResults::AreThere() const { return LFN_Exists(LongFileName(m_keptPath)); }

void StaleResults::Drop() const {
  if (AreThere())
    LFN_DeleteFile(LongFileName(m_keptPath)); // One that stays is looked at again, and nothing is found to lack.
  if (LongFileName const rest(m_keptPath + L"_priv"); LFN_Exists(rest))
    LFN_DeleteFile(rest);
}

} // namespace desktop
