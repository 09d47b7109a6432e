#pragma once

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_named_value.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/Utf8.h"
#include "solutionmanager/store/SolutionFileManager.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <memory>

namespace support {

/// A folder with a solution library "d.qsol" and verbs to use it.  The manager is made at the first use; Reopen makes
/// another one on the same files.
class StoreTest : public testing::Test {
protected:
  using Key = SolutionVariationKey;
  using LibIOReturn = CStreamioLibrary::LibIOReturn;
  using Pairs = std::vector<std::pair<AString, AString>>;
  static constexpr auto kOk = CStreamioLibrary::kLibSuccess;
  static constexpr auto kOrdinaryMode = CStreamioLibrary::kOrdinaryMode;

  AString Path(char const * name = "d.qsol") const { return text::FromUtf8((m_folder / name).string()); }
  AString Folder() const { return Path(""); }
  bool Exists(char const * name) const { return std::filesystem::exists(m_folder / name); }
  std::uintmax_t Length(char const * name) const {
    std::error_code none;
    auto const length = std::filesystem::file_size(m_folder / name, none);
    return none ? 0 : length;
  }

  SolutionFileManager & Files() {
    if (!m_files)
      m_files = std::make_unique<SolutionFileManager>(LongFileName(Path()));
    return *m_files;
  }
  SolutionFileManager & Reopen() {
    m_files.reset();
    return Files();
  }
  SolutionFileManager & Unattached() {
    m_files = std::make_unique<SolutionFileManager>(static_cast<IProject *>(nullptr));
    return *m_files;
  }
  /// One block for each version, committed; the manager that wrote them is closed.
  void Commit(std::vector<long> const & versions) {
    for (long const version : versions)
      ASSERT_EQ(Save(DataName(version), version), kOk);
    ASSERT_EQ(Files().CommitAll(false), kOk);
    m_files.reset();
  }

  static AString DataName(long version, AString const & variation = L"a=1") {
    return Key(1, variation, 2, version).Pack();
  }
  static io::CBlock Block(AString const & name, long content) {
    io::CBlock block(name);
    block << io::named(L"N", content);
    return block;
  }
  LibIOReturn Save(AString const & name, long content) {
    io::CBlock block = Block(name, content);
    return Files().SaveDefinition(block);
  }
  /// -1 when there is no such block.
  long ContentOf(AString const & name) {
    io::CBlock block(name);
    long content = -1;
    if (Files().LoadDefinition(block) == kOk)
      block >> io::named(L"N", content);
    return content;
  }
  std::vector<AString> Names() {
    std::list<AString> names;
    Files().IndexKeyList(names, false);
    return {names.begin(), names.end()};
  }
  SolutionFileManager::NameMap MapInMemory() {
    SolutionFileManager::NameMap map;
    Files().GetRealToInternalNameMap(map);
    return map;
  }
  /// What the library holds of the name map.
  Pairs MapInLibrary() {
    io::CBlock block(SolutionFileManager::kRealToInternalBlkName);
    Pairs pairs;
    if (Files().GetLibraryForDirectAccess().LoadDefinition(block) != kOk)
      return pairs;
    for (auto const & child : block) {
      io::CBlock_ptr<io::CBlock_named_value> const pair(child);
      AString internalName;
      if (pair && pair->Query(internalName))
        pairs.emplace_back(pair->Name(), internalName);
    }
    return pairs;
  }
  std::vector<AString> NamesInLibrary() {
    std::vector<AString> names;
    for (auto const & pair : MapInLibrary())
      names.push_back(pair.first);
    return names;
  }
  /// Whether something writes to the library's files.
  template <class Work> bool Writes(Work work) {
    auto const before = std::pair(Length("d.qsol"), Length("d.qsol_priv"));
    work();
    return std::pair(Length("d.qsol"), Length("d.qsol_priv")) != before;
  }

  /// Whether a write of the name map replaces what somebody else put there.
  bool MapIsMarkedAsChanged() {
    io::CBlock other(SolutionFileManager::kRealToInternalBlkName);
    other << io::CBlock_named_value(L"other", io::CBlock_value(AString(L"SolutionBlock1")));
    EXPECT_EQ(Files().GetLibraryForDirectAccess().SaveDefinition(other), kOk);
    EXPECT_EQ(Files().WriteRealToInternalBlockNameMap(), kOk);
    return NamesInLibrary() != std::vector<AString>{L"other"};
  }

  TemporaryFolder m_folder;
  std::unique_ptr<SolutionFileManager> m_files;
};

} // namespace support
