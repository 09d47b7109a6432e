#pragma once

#include "solutionmanager/address/SolutionVariationKey.h"
#include "viewkit/library/LibraryReader.h"

#include <map>
#include <optional>
#include <vector>

namespace desktop {

class Project;

/// What another process stores into a project, read beside it: no lock is taken and nothing is written, so that the
/// writer is never held up.  What was committed before the first look is known and no news.
class LiveResults {
public:
  /// A block that came or was replaced.
  struct News {
    SolutionVariationKey key;
    AString blockName; ///< inside the library
  };
  enum class End {
    kSaved,      ///< nothing is unsaved
    kUnsaved,    ///< closed in order
    kCrashed,    ///< left without closing it
    kUnreadable, ///< no library, or a later format
    kGoesOn      ///< another writer is there already
  };

  /// What it refers to outlives it.  With a length, what the library holds behind it is unsaved too: a takeover put it
  /// there.
  LiveResults(Project const & project, AString const & libraryPath, std::optional<std::uint64_t> savedLength = {});

  /// Whether a process has the project for writing.
  bool HasWriter() const;
  /// What is new since the last look, in the order of the files.  Throws desktop::Error when the library can't be read.
  std::vector<News> Look();
  /// False when the block is gone or replaced by now; then a later look tells of it.
  bool Load(News const & news, io::CBlock & block);
  /// How often results were saved.
  std::uint64_t CountCommits() const { return m_reader.PublicFacts().commits; }
  /// How a writer that is gone left the library.
  End HowItEnded() const;
  /// The name of a setup, also of one that is not saved yet.
  AString NameOfSetup(long setupID);

private:
  struct Place {
    std::uint64_t salt = 0;
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
  };
  using Places = std::map<AString, Place, AString::NoCaseLess>;

  bool Refresh();
  bool IsNews(library::LibraryReader::Entry const & entry, Place const & place) const;
  std::map<AString, AString, AString::NoCaseLess> ReadNames();
  void ReadSetupNames();

  Project const & m_project;
  AString m_path;
  std::optional<std::uint64_t> m_savedLength;
  library::LibraryReader m_reader;
  bool m_isOpen = false;
  bool m_isFirst = true;
  bool m_wasEarly = false;
  Places m_places;
  std::map<long, AString> m_setupNames;
};

} // namespace desktop
