#pragma once

#include "basekit/file/LongFileName.h"

#include <cstdint>
#include <optional>

namespace desktop {

/// Up to where a solution library is part of what was saved last.  A takeover, and a save that does not come to its
/// end, bring the library beyond the state that the project file tells of; a library only grows, so its length as of
/// that state is enough to go back.  It stands in a file of its own beside the library (its name with "_saved"
/// appended), from before the library grows until the next save or discard, and counts as long as the project file is
/// of the generation that it was written for.  Failures to write are Errors of kind kStorage.
class SavedLibrary {
public:
  explicit SavedLibrary(AString const & libraryPath);

  /// Before the library grows.  What the file tells of this generation already stays: it is the older one.
  void Note(long generation, std::uint64_t committedLength) const;
  /// Empty when the library is what was saved, or nobody can tell that it goes on from what was saved.
  std::optional<std::uint64_t> Length(long generation) const;
  /// Cuts the library back.  Nobody may have it open, and its private file must be gone.
  void GoBack(std::uint64_t length) const;
  void Forget() const;
  /// Forgets what was noted for another generation.
  void ForgetObsolete(long generation) const;

private:
  LongFileName m_library;
  LongFileName m_file;
};

} // namespace desktop
