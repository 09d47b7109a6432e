// library_writer write PATH SEED FIRST [LAST]: takes a library over and does the steps of a play on it, from FIRST on.
// "ready", and the number of each step that succeeded, is told in a line of its own at once.  Ends with the library's
// result when one fails, and in order behind the LAST.
//
// library_writer check PATH SEED ACKNOWLEDGED: takes a library over and says after how many steps of the play it
// stands; fails when that is neither a state that was acknowledged nor the next one.

#include "basekit/text/Utf8.h"
#include "tests/support/LibraryPlay.h"

#include <iostream>
#include <limits>
#include <optional>

namespace {

using support::LibraryPlay;

void TakeOver(CStreamioLibWritePrivate & library, std::string const & path, std::uint64_t seed) {
  library.SetBinaryMode(seed % 2 == 0);
  library.SetLibPath(text::FromUtf8(path), CStreamioLibrary::kRecoveryMode);
}

int Refused(CStreamioLibWritePrivate & library, int result) {
  std::cerr << "result " << result << ": " << text::ToUtf8(library.LastError()) << '\n';
  return result;
}

int Write(std::string const & path, std::uint64_t seed, std::uint64_t first, std::uint64_t last) {
  LibraryPlay const play(seed, LibraryPlay::Sizes::Mixed);
  CStreamioLibWritePrivate library;
  TakeOver(library, path, seed);
  if (int const result = library.AcquireForWriting(); result != 0)
    return Refused(library, result);
  std::cout << "ready" << std::endl;
  for (std::uint64_t number = first; number <= last; ++number) {
    if (int const result = play.Do(number, library); result != 0)
      return Refused(library, result);
    std::cout << number << std::endl;
  }
  return 0;
}

int Check(std::string const & path, std::uint64_t seed, std::uint64_t acknowledged) {
  LibraryPlay const play(seed, LibraryPlay::Sizes::Mixed);
  CStreamioLibWritePrivate library;
  TakeOver(library, path, seed);
  std::string complaint;
  auto const content = LibraryPlay::ContentOf(library, complaint);
  std::uint64_t const safe = play.SafeAfter(acknowledged);
  auto const found = content ? play.Find(*content, safe, acknowledged + 1) : std::nullopt;
  if (content && !found)
    complaint = "no state between " + std::to_string(safe) + " and " + std::to_string(acknowledged + 1) +
                " steps\nthere is    " + LibraryPlay::TextOf(*content) + "\nacknowledged " +
                LibraryPlay::TextOf(play.After(acknowledged));
  if (!found) {
    std::cerr << complaint << '\n' << text::ToUtf8(library.LastError()) << '\n';
    return 1;
  }
  std::cout << *found << std::endl;
  return 0;
}

} // namespace

int main(int count, char ** words) {
  if (count < 5) {
    std::cerr << "usage: library_writer write PATH SEED FIRST [LAST] | check PATH SEED ACKNOWLEDGED\n";
    return 2;
  }
  std::uint64_t const seed = std::stoull(words[3]);
  std::uint64_t const number = std::stoull(words[4]);
  if (std::string(words[1]) == "check")
    return Check(words[2], seed, number);
  return Write(words[2], seed, number, count > 5 ? std::stoull(words[5]) : std::numeric_limits<std::uint64_t>::max());
}
