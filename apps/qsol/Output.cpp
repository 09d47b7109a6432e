#include "apps/qsol/Output.h"

#include <cerrno>

#include <unistd.h>

namespace qsol {

OutputBuffer::OutputBuffer(int descriptor) : m_descriptor(descriptor), m_bytes(64 * 1024) {
  setp(m_bytes.data(), m_bytes.data() + m_bytes.size());
}

int OutputBuffer::sync() {
  char const * at = pbase();
  while (at < pptr() && m_error == 0) {
    auto const written = ::write(m_descriptor, at, static_cast<std::size_t>(pptr() - at));
    if (written >= 0)
      at += written;
    else if (errno != EINTR)
      m_error = errno;
  }
  setp(m_bytes.data(), m_bytes.data() + m_bytes.size());
  return m_error == 0 ? 0 : -1;
}

int OutputBuffer::overflow(int character) {
  if (sync() != 0)
    return traits_type::eof();
  if (character != traits_type::eof())
    sputc(traits_type::to_char_type(character));
  return traits_type::not_eof(character);
}

} // namespace qsol
