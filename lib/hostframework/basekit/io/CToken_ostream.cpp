#include "basekit/io/CToken_ostream.h"

#include "basekit/text/Utf8.h"

namespace io {

namespace {

constexpr std::size_t kFlushAt = 64 * 1024;

} // namespace

CToken_ostream::CToken_ostream(AString const & path, int flags) : ByteOstream(flags, kExactDigits, false) {
  auto const name = text::ToUtf8(path);
  if (name.find('\0') == std::string::npos)
    m_file = std::fopen(name.c_str(), "wb");
  if (m_file)
    std::setvbuf(m_file, nullptr, _IONBF, 0);
  else
    SetFail();
}

CToken_ostream::~CToken_ostream() { Close(); }

void CToken_ostream::Grown() {
  if (Buffer().size() >= kFlushAt)
    Flush();
}

void CToken_ostream::Flush() {
  if (m_file && std::fwrite(Buffer().data(), 1, Buffer().size(), m_file) != Buffer().size())
    SetFail();
  Buffer().clear();
}

void CToken_ostream::Close() {
  if (!m_file)
    return;
  Flush();
  if (std::fclose(m_file) != 0)
    SetFail();
  m_file = nullptr;
}

} // namespace io
