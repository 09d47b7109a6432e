// The two lists of managed files from hostile bytes: used, committed and rolled back.  Nothing outside of the managed
// folder is touched, a commit repeats itself, and a file that was saved is never rolled back.
//
// An input is the committed list and, behind a line "----", the private one.

#include "fuzz/Entry.h"
#include "fuzz/FencedFiles.h"

#include "basekit/file/LongFileName.h"
#include "solutionmanager/locations/CManagedFilesMgr.h"
#include "tests/solutionmanager/support/TestDesktop.h"

#include <cstdlib>
#include <string>

namespace {

constexpr std::string_view kBetween = "\n----\n";
constexpr wchar_t const * kResults = L"r/";

std::string Content(MemoryFiles & files, AString const & path) {
  std::unique_ptr<file::IFile> opened;
  file::FileInfo info;
  if (!files.Open(path, file::OpenMode::Read, opened).Ok() || !opened->Describe(info).Ok())
    return {};
  std::string bytes(info.length, '\0');
  std::size_t got = 0;
  return opened->Read(0, bytes, got).Ok() ? bytes : std::string();
}

void Demand(bool holds) {
  if (!holds)
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
  std::string const input(reinterpret_cast<char const *>(data), size);
  std::size_t const between = input.find(kBetween);
  FencedFiles files(kResults);
  files.Put(L"r/ManagedFiles_Design3.qsol", input.substr(0, between));
  if (between != std::string::npos)
    files.Put(L"r/ManagedFiles_Design3.qsol_priv", input.substr(between + kBetween.size()));
  for (AString const name : {L"r/mf_3/plots/a.txt", L"r/mf_3/plots/b.txt", L"r/mf_3/data/c.txt", L"r/d.qsol"})
    files.Put(name, "x");
  support::TestDesign design(kResults);
  {
    CManagedFilesMgr manager{LongFileName(kResults), &design};
    manager.DeleteManagedFile(L"plots", L"b.txt");
    manager.Commit(LongFileName(kResults));
    std::string const list = Content(files, L"r/ManagedFiles_Design3.qsol");
    manager.Commit(LongFileName(kResults));
    Demand(Content(files, L"r/ManagedFiles_Design3.qsol") == list);
  }
  Demand(files.Stands(L"r/d.qsol"));
  bool const hadFile = files.Stands(L"r/mf_3/plots/a.txt");
  bool const isSaved = Content(files, L"r/ManagedFiles_Design3.qsol").find("plots [\"a.txt\"") != std::string::npos;
  {
    // The private list again, as if it had outlived its commit.
    if (between != std::string::npos)
      files.Put(L"r/ManagedFiles_Design3.qsol_priv", input.substr(between + kBetween.size()));
    CManagedFilesMgr manager{LongFileName(kResults), &design};
    manager.GetManagedFilesDir();
  }
  Demand(!isSaved || !hadFile || files.Stands(L"r/mf_3/plots/a.txt"));
  return 0;
}
