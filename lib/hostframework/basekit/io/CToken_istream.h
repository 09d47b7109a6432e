#pragma once

#include "basekit/io/CAbstract_istream.h"
#include "basekit/io/CToken_ostream.h"

#include <memory>
#include <string_view>
#include <vector>

namespace io {

class BlockIndex;
class CToken;

/// Reads a file of items and tokens, of either form, also one that ends abruptly: what is whole is read.
/// An open that fails shows as fail().  Flags: StreamFlags.
class CToken_istream : public CAbstract_istream {
public:
  CToken_istream(AString const & path, int flags);
  template <NamesFile File>
  CToken_istream(File const & file, int flags) : CToken_istream(AString(file.FilePath()), flags) {}
  ~CToken_istream() override;

  /// Scans the file for its top-level blocks.  Flags: IndexFlags.  A torn tail is no failure.
  void BuildIndex(int flags);
  /// Moves to the whole block of that name, case ignored; false, and not moved, when there is none.
  bool BlockSeek(AString const & name);
  void Close();

  bool AtKeyword(AString const & keyword) override;
  bool AtBeginBlock(AString const & name) override;
  CBlock_ptr<CBlock_item> ReadItem() override;
  CToken NextToken() override;
  void ExpectMark(wchar_t mark) override;
  void PushBack(CToken const & token) override;
  bool fail() const override { return m_failed; }
  void SetFail() override { m_failed = true; }

private:
  std::string_view Bytes() const { return m_bytes; }

  std::string m_bytes;
  std::size_t m_position = 0;
  std::vector<CToken> m_pushedBack;
  std::unique_ptr<BlockIndex> m_index;
  bool m_failed = false;
};

} // namespace io
