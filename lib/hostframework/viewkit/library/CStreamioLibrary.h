#pragma once

#include "viewkit/library/CStreamioLibraryStats.h"

#include <vector>

class AString;
namespace io {
class CBlock;
}

/// A file of named top-level blocks, each addressed by its name; case is ignored, as in all look-ups of blocks.
/// Nothing throws: each failure is a LibIOReturn other than kLibSuccess.
class CStreamioLibrary {
public:
  enum LibIOReturn {
    kLibSuccess = 0,
    kLibNotAttached = 1,
    kLibNotFound = 2,
    kLibReadFailed = 3,
    kLibWriteFailed = 4,
    /// A checksum does not fit, or a block's bytes are no block.
    kLibDamaged = 5,
    /// Another library has the files for writing.
    kLibLocked = 6,
    /// The file is no block library.
    kLibForeignFile = 7,
    /// The file was written in a later format.
    kLibNewerVersion = 8,
    /// A name that is empty or no Unicode text.
    kLibBadName = 9,
  };
  enum TMode {
    kOrdinaryMode = 0,
    /// Takes over a private file that an earlier run left.
    kRecoveryMode = 1,
  };

  CStreamioLibrary() = default;
  CStreamioLibrary(CStreamioLibrary const &) = delete;
  CStreamioLibrary & operator=(CStreamioLibrary const &) = delete;

  /// The form of blocks written from now on; until it is called, the form of the file.
  virtual void SetBinaryMode(bool binary) = 0;
  virtual bool IsBinaryModeFile() const = 0;
  /// Digits of floating values written from now on; 16 or more is exact.
  virtual void SetPrecision(int digits) = 0;
  virtual CStreamioLibraryStats GetFileStats() const = 0;
  /// Reads the block of the name that the block holds; a block that isn't there leaves it as it was.
  virtual LibIOReturn LoadDefinition(io::CBlock & block) = 0;
  /// Stores the block under its name, in place of one of that name.
  virtual LibIOReturn SaveDefinition(io::CBlock & block) = 0;
  /// A name that isn't there is no failure.
  virtual LibIOReturn DeleteDefinition(AString const & name) = 0;
  virtual LibIOReturn RewriteLibrary(bool convert) = 0;
  /// Stores each child block under its own name: all of them or, after a failure or crash, none.
  virtual LibIOReturn SaveBlocks(io::CBlock & block) = 0;
  virtual void SetLibPath(AString const & path, TMode mode) = 0;
  virtual LibIOReturn DeleteBlocks(std::vector<AString> const & names) = 0;
  virtual ~CStreamioLibrary() = default;
};
