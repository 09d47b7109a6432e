#pragma once

namespace io {

/// Bits of the flags that token streams and packing take.  Bits that a class has no use for are ignored.
enum StreamFlags : int {
  kStreamPlain = 0,
  kStreamRead = 1,        ///< opened for reading alone
  kStreamWrite = 32,      ///< a new file takes the place of an old one
  kStreamBinary = 64,     ///< items are written in the binary form; readers see the form by themselves
  kStreamReadWhole = 2048 ///< the file is small and read in one go
};

/// Bits of the flags of BuildIndex.
enum IndexFlags : int {
  kIndexTopLevel = 1, ///< the blocks that lie in no other block
  kIndexLastWins = 8  ///< of a repeated name the last whole block counts, not the first
};

} // namespace io
