#pragma once

#include "basekit/io/CAbstract_istream.h"
#include "basekit/io/CToken.h"

#include <string_view>
#include <vector>

namespace io {

/// Items and tokens from bytes that outlive the stream; an item may be of either form.
class ByteIstream : public CAbstract_istream {
public:
  explicit ByteIstream(std::string_view bytes = {}) : m_bytes(bytes) {}

  bool AtEnd() const;

  bool AtKeyword(AString const & keyword) override;
  bool AtBeginBlock(AString const & name) override;
  CBlock_ptr<CBlock_item> ReadItem() override;
  CToken NextToken() override;
  void ExpectMark(wchar_t mark) override;
  void PushBack(CToken const & token) override;
  bool fail() const override { return m_failed; }
  void SetFail() override { m_failed = true; }

protected:
  std::string_view Bytes() const { return m_bytes; }
  void SetBytes(std::string_view bytes);
  void MoveTo(std::size_t position);

private:
  struct Taken {
    CToken token;
    std::size_t start;
  };

  std::string_view m_bytes;
  std::size_t m_position = 0;
  std::vector<Taken> m_taken; // the last few tokens, for PushBack
  bool m_failed = false;
};

} // namespace io
