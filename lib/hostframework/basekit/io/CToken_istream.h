#pragma once

#include "basekit/io/ByteIstream.h"
#include "basekit/io/CToken_ostream.h"

#include <memory>
#include <string>

namespace io {

class BlockIndex;
class CBlock;
class RecordReader;
struct BlockPlace;

/// Reads a file of items and tokens, of either form, also one that ends abruptly: what is whole is read.
/// An open that fails shows as fail().  Flags: StreamFlags.
class CToken_istream : public ByteIstream {
public:
  CToken_istream(AString const & path, int flags);
  template <NamesFile File>
  CToken_istream(File const & file, int flags) : CToken_istream(AString(file.FilePath()), flags) {}
  ~CToken_istream() override;

  /// Scans the file for its top-level blocks.  Flags: IndexFlags.  A torn tail is no failure.
  void BuildIndex(int flags);
  /// Moves to the whole block of that name, case ignored; false, and not moved, when there is none or no index.
  bool BlockSeek(AString const & name);
  /// As BlockSeek by the block's own name and reading it, without the way over bytes where a library holds the block as
  /// edits.  False when there is none; a block that can't be read leaves the stream failed and its argument alone.
  bool BlockRead(CBlock & block);
  void Close();

private:
  BlockPlace const * FindInLibrary(AString const & name) const;
  bool SeekInLibrary(AString const & name);

  std::string m_content;
  std::unique_ptr<BlockIndex> m_index;
  std::unique_ptr<RecordReader> m_library;
};

} // namespace io
