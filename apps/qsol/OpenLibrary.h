#pragma once

#include "viewkit/library/LibraryReader.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace qsol {

/// Which library, and how much of it.  Without either flag the committed state is shown, or the private file where
/// there is no public one.
struct ViewOptions {
  std::string file;
  bool withPrivate = false;
  bool committedOnly = false;
};

/// FILE, --private and --committed-only.
void AddViewOptions(CLI::App & verb, ViewOptions & options);
/// The two flags alone.
void AddViewFlags(CLI::App & verb, ViewOptions & options);

/// A library open for looking: nothing is locked, changed or taken over, and another process may go on writing it.
struct OpenedLibrary {
  library::LibraryReader reader;
  AString publicPath;
  AString privatePath;
  /// As it stands on the disk, shown or not; None when a private file was named itself.
  library::LibraryReader::PrivateFile privateState = library::LibraryReader::PrivateFile::None;
  /// What the user should know, a line each.
  std::vector<std::string> notices;

  bool ShowsPublic() const { return reader.PublicFacts().exists; }
  bool ShowsPrivate() const { return reader.PrivateFacts().exists; }
  AString const & PathOf(bool isPrivate) const { return isPrivate ? privatePath : publicPath; }
  /// "committed", "private" or "committed and private".
  char const * Shown() const;
};

/// Throws Failure when there is nothing that can be read.
void OpenLibrary(ViewOptions const & options, OpenedLibrary & opened);
/// A library file that stands there but can't be opened as one gives the reason, with its remedy; else empty.
std::string WhyUnreadable(AString const & path);
char const * NameOf(library::LibraryReader::PrivateFile state);

} // namespace qsol
