#pragma once

#include "basekit/file/FileStatus.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

class LongFileName;

namespace file {

enum class FileKind { None, File, Folder, Other };

/// What a path or an open file is.  Two infos with equal device and node are the same file.
struct FileInfo {
  FileKind kind = FileKind::None;
  bool isLink = false;
  std::uint64_t length = 0;
  std::uint64_t device = 0;
  std::uint64_t node = 0;
  unsigned mode = 0;

  bool IsSameFile(FileInfo const & other) const {
    return kind != FileKind::None && kind == other.kind && device == other.device && node == other.node;
  }
};

/// What stands under the name of an open file: the file, nothing, or another one.
enum class Standing { Same, Vanished, Replaced };

/// An open file; closing is the destructor's.  Offsets and lengths are bytes.
class IFile {
public:
  virtual ~IFile() = default;
  /// Reads up to the span's size; `got` is less only at the end of the file.
  virtual FileStatus Read(std::uint64_t offset, std::span<char> into, std::size_t & got) = 0;
  /// Writes all the pieces, one behind the other, or fails; after a failure part of them may stand in the file.
  virtual FileStatus Write(std::uint64_t offset, std::span<std::string_view const> pieces) = 0;
  virtual FileStatus Truncate(std::uint64_t length) = 0;
  /// Returns when the file's content would survive a loss of power.
  virtual FileStatus Sync() = 0;
  virtual FileStatus Describe(FileInfo & info) = 0;
  /// Whether the path still names this file.  Quick when it is asked again for the same path: the folder is kept open.
  virtual FileStatus StandsUnder(LongFileName const & path, Standing & standing);
  /// Takes the exclusive lock of the file without waiting; fails with EAGAIN while another open file has it.  The lock
  /// belongs to this open file and ends with it, at the latest with the process.
  virtual FileStatus TryLock() = 0;
  virtual FileStatus Unlock() = 0;
  /// Whether another open file has the lock; nothing is taken, and reading is all that the file must be open for.
  virtual FileStatus AskLock(bool & isLocked) = 0;
};

enum class OpenMode {
  Read,
  /// Reading and writing; the file must exist.
  ReadWrite,
  /// Reading and writing; made when missing.
  Create,
  /// Reading and writing; fails with EEXIST when it exists.
  CreateNew,
};

/// All that this system asks of the operating system's files.  Tests put a faulty one in its place.
class IFileSystem {
public:
  virtual ~IFileSystem() = default;
  virtual FileStatus Open(LongFileName const & path, OpenMode mode, std::unique_ptr<IFile> & opened) = 0;
  /// Success with FileKind::None when nothing stands there.  The last link is followed, and told by isLink.
  virtual FileStatus Describe(LongFileName const & path, FileInfo & info) = 0;
  /// Replaces a file that stands under the new name.
  virtual FileStatus Rename(LongFileName const & from, LongFileName const & to) = 0;
  virtual FileStatus RemoveFile(LongFileName const & path) = 0;
  virtual FileStatus RemoveFolder(LongFileName const & path) = 0;
  virtual FileStatus MakeFolder(LongFileName const & path) = 0;
  /// Makes new, renamed and removed names of the folder survive a loss of power.  An empty path: the current folder.
  virtual FileStatus SyncFolder(LongFileName const & path) = 0;
  /// The names in a folder, without "." and "..", sorted.
  virtual FileStatus List(LongFileName const & path, std::vector<AString> & names) = 0;
  virtual FileStatus SetMode(LongFileName const & path, unsigned mode) = 0;
};

/// The file system in use: the operating system's, unless a test has put in another.
IFileSystem & FileSystem();
/// Puts in another one (null: the operating system's) and returns the former; not owned.
IFileSystem * SetFileSystem(IFileSystem * fileSystem);
IFileSystem & SystemFiles();

} // namespace file
