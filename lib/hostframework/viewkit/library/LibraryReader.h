#pragma once

#include "basekit/text/AString.h"
#include "viewkit/library/CStreamioLibrary.h"

#include <cstdint>
#include <memory>
#include <string>

class LongFileName;

namespace library {

struct LibraryState;

/// Reads a library that others may be writing: no lock, no change on disk.  Shows the committed state, and on request
/// the prefix of what the private file holds beyond it, closed in order or not.
class LibraryReader {
public:
  using LibIOReturn = CStreamioLibrary::LibIOReturn;
  enum class PrivateFile {
    None,
    /// Another library is writing it.
    InUse,
    ClosedInOrder,
    LeftByCrash,
    /// It belongs to another state of the public file.
    OtherGeneration,
    /// No library file, or a later format.
    Unreadable,
  };
  struct Entry {
    AString name;
    /// Bytes of the stored form.
    std::uint64_t length = 0;
    std::uint64_t offset = 0;
    bool isPrivate = false;
    bool isBinary = false;
  };
  struct Damage {
    bool isPrivate = false;
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
    /// Empty when it can't be told which block is lost.
    AString name;
    AString what;
  };
  struct FileFacts {
    bool exists = false;
    unsigned version = 0;
    bool isBinary = false;
    std::uint64_t commits = 0;
    /// Drawn at random for the file; for its last commit, 0 without one; and what a private file was begun on.
    std::uint64_t salt = 0;
    std::uint64_t commit = 0;
    std::uint64_t baseCommit = 0;
    /// What counts, and what the file has.
    std::uint64_t end = 0;
    std::uint64_t length = 0;
    std::uint64_t blocks = 0;
    std::uint64_t liveBytes = 0;
    /// Of a private file.
    bool wasClosedInOrder = false;
  };

  LibraryReader();
  ~LibraryReader();
  LibraryReader(LibraryReader const &) = delete;
  LibraryReader & operator=(LibraryReader const &) = delete;

  /// kLibNotFound when there is neither file.
  LibIOReturn Open(LongFileName const & path, bool withPrivate);
  /// The public file alone, as it was when it had the length.
  LibIOReturn OpenEarlier(LongFileName const & path, std::uint64_t length);
  /// One file by itself, public or private, wherever it belongs; the facts tell which it is.
  LibIOReturn OpenAlone(LongFileName const & file);
  /// Reads what was committed, or saved, since; `changed` tells whether there was anything.
  LibIOReturn Refresh(bool & changed);
  /// In the order of the files, the public one first.
  std::vector<Entry> List();
  /// Reads the block of the name that the block holds; else it stays as it was.
  LibIOReturn Load(io::CBlock & block);
  /// The stored form of a block, checked.
  LibIOReturn LoadBytes(AString const & name, std::string & bytes, bool & isBinary);
  /// Reads both files whole; returns how many records are whole.
  std::size_t Verify(std::vector<Damage> & damages);
  FileFacts PublicFacts() const;
  FileFacts PrivateFacts() const;
  AString const & LastError() const;

  /// Where the last commit of a public file ends and how long the file is, in little time: that of the index, which is
  /// not read, is most of an opening.
  struct CommitFacts {
    std::uint64_t commits = 0;
    std::uint64_t end = 0;
    std::uint64_t length = 0;
  };
  static LibIOReturn FactsOfLastCommit(LongFileName const & path, CommitFacts & facts);
  static PrivateFile StateOfPrivateFile(LongFileName const & path);

private:
  LibIOReturn OpenPrivate();

  std::unique_ptr<LibraryState> m_state;
  bool m_withPrivate = false;
};

} // namespace library
