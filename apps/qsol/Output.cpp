#include "apps/qsol/Output.h"

#include <cerrno>

#include <unistd.h>

namespace qsol {

int WriteWhole(int descriptor, std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    auto const written = ::write(descriptor, bytes.data(), bytes.size());
    if (written >= 0)
      bytes.remove_prefix(static_cast<std::size_t>(written));
    else if (errno != EINTR)
      return errno;
  }
  return 0;
}

OutputBuffer::OutputBuffer(int descriptor) : m_descriptor(descriptor), m_bytes(64 * 1024) {
  setp(m_bytes.data(), m_bytes.data() + m_bytes.size());
}

int OutputBuffer::sync() {
  if (m_error == 0)
    m_error = WriteWhole(m_descriptor, std::string_view(pbase(), static_cast<std::size_t>(pptr() - pbase())));
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
