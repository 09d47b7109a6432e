#pragma once

#include "basekit/text/Utf8.h"
#include "solutionmanager/locations/CManagedFilesMgr.h"
#include "tests/solutionmanager/support/TestDesktop.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <string>

namespace support {

/// The managed files of design 3 in a results folder of its own; the manager is made when it is asked for.
struct ManagedFiles : testing::Test {
  LongFileName Results() const { return text::FromUtf8(folder.Path().string() + "/"); }
  CManagedFilesMgr & Manager() {
    if (!manager)
      manager = std::make_unique<CManagedFilesMgr>(Results(), &design);
    return *manager;
  }
  AString Create(AString const & baseDir) {
    AString name;
    EXPECT_TRUE(Manager().CreateManagedFile(name, baseDir, L"txt"));
    return name;
  }
  /// The first file is saved and to be deleted, the second is new.
  void SetUpPending() {
    manager.reset();
    std::filesystem::remove_all(folder / "mf_3");
    Create(L"plots");
    Put("mf_3/plots/tmp1.txt", "first");
    Commit();
    Create(L"plots");
    Put("mf_3/plots/tmp2.txt", "second");
    Manager().DeleteManagedFile(L"plots", L"tmp1.txt");
  }
  void Commit() { Manager().Commit(Results()); }
  std::string Content(std::string const & name) const {
    std::ifstream in(folder / name);
    return in ? std::string(std::istreambuf_iterator<char>(in), {}) : "-";
  }
  bool Stands(std::string const & name) const { return std::filesystem::exists(folder / name); }
  void Put(std::string const & name, std::string const & content) {
    std::filesystem::create_directories((folder / name).parent_path());
    std::ofstream(folder / name) << content;
  }

  support::TemporaryFolder folder;
  support::TestDesign design{text::FromUtf8(folder.Path().string() + "/")};
  std::unique_ptr<CManagedFilesMgr> manager;
};

constexpr char kCommitted[] = "ManagedFiles_Design3.qsol";
constexpr char kPrivate[] = "ManagedFiles_Design3.qsol_priv";

} // namespace support
