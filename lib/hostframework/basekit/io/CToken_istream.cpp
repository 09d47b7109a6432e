#include "basekit/io/CToken_istream.h"

#include "basekit/io/BlockIndex.h"
#include "basekit/io/CBlock_item.h"
#include "basekit/text/Utf8.h"

namespace io {

namespace {

bool ReadWhole(AString const & path, std::string & content) {
  auto const name = text::ToUtf8(path);
  std::FILE * const file = name.find('\0') == std::string::npos ? std::fopen(name.c_str(), "rb") : nullptr;
  if (!file)
    return false;
  char buffer[64 * 1024];
  for (std::size_t got = 1; got > 0;) {
    got = std::fread(buffer, 1, sizeof buffer, file);
    content.append(buffer, got);
  }
  bool const whole = std::ferror(file) == 0;
  std::fclose(file);
  return whole;
}

} // namespace

CToken_istream::CToken_istream(AString const & path, int) {
  if (ReadWhole(path, m_content))
    SetBytes(m_content);
  else
    SetFail();
}

CToken_istream::~CToken_istream() = default;

void CToken_istream::BuildIndex(int flags) { m_index = std::make_unique<BlockIndex>(Bytes(), flags); }

bool CToken_istream::BlockSeek(AString const & name) {
  auto const start = m_index ? m_index->Find(name) : std::nullopt;
  if (start)
    MoveTo(*start);
  return start.has_value();
}

void CToken_istream::Close() {
  SetBytes({});
  m_index.reset();
  m_content = std::string();
}

} // namespace io
