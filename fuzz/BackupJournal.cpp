// The journal of a backup area from hostile bytes: taken back, twice.  Nothing outside of the root is touched, and
// what only damaged lines tell of stays in the area.
//
// When an input begins with '!' every line's checksum is made right first, so that the entries are reached.

#include "fuzz/Entry.h"
#include "fuzz/FencedFiles.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/Checksum.h"
#include "viewkit/backup/BackupArea.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr std::size_t kHead = 9;

std::string Mended(std::string_view lines) {
  std::string mended;
  for (std::size_t start = 0; start < lines.size();) {
    std::size_t const end = std::min(lines.find('\n', start), lines.size());
    std::string_view const line = lines.substr(start, end - start);
    std::string_view const told = line.size() > kHead ? line.substr(kHead) : std::string_view();
    char head[kHead + 1];
    std::snprintf(head, sizeof head, "%08x ", static_cast<unsigned>(io::Checksum(told)));
    mended.append(head).append(told);
    if (end < lines.size())
      mended += '\n';
    start = end + 1;
  }
  return mended;
}

void Demand(bool holds) {
  if (!holds)
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
  std::string_view const input(reinterpret_cast<char const *>(data), size);
  std::string const journal = input.starts_with('!') ? Mended(input.substr(1)) : std::string(input);
  FencedFiles files(L"root/");
  files.Put(L"root/backup/journal", journal);
  for (wchar_t const * const name : {L"root/backup/1", L"root/backup/2", L"root/a", L"root/b", L"outside"})
    files.Put(name, "x");
  LongFileName const area(L"root/backup/");
  LongFileName const root(L"root/");
  bool const isBack = BackupArea::Restore(area, root);
  // Lines without an entry tell of nothing: what the area holds stays.
  if (journal.find('(') == std::string::npos && journal.find('\n') != std::string::npos)
    Demand(!isBack && files.Stands(L"root/backup/1"));
  BackupArea::Restore(area, root);
  Demand(files.Stands(L"outside"));
  return 0;
}
