#include "products/rfcircuit/engine/touchstone/ByteSource.h"

#include "products/rfcircuit/engine/touchstone/TouchstoneError.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace rf {

FileBytes::FileBytes(std::filesystem::path const & path) : m_Path(path) {
  errno = 0;
  m_File = std::fopen(path.string().c_str(), "rb");
  if (!m_File)
    Refuse(errno);
  std::setvbuf(m_File, nullptr, _IONBF, 0); // the reader has a buffer of its own
}

FileBytes::~FileBytes() {
  if (m_File)
    std::fclose(m_File);
}

std::size_t FileBytes::Read(char * bytes, std::size_t size) {
  errno = 0;
  std::size_t const count = std::fread(bytes, 1, size, m_File);
  if (count < size && std::ferror(m_File)) {
    int const error = errno;
    std::fclose(m_File);
    m_File = nullptr;
    Refuse(error);
  }
  return count;
}

std::uint64_t FileBytes::Size() const {
  std::error_code unknown;
  std::uintmax_t const size = std::filesystem::file_size(m_Path, unknown);
  return unknown ? 0 : size;
}

void FileBytes::Refuse(int error) const {
  throw TouchstoneFileError(m_Path.string() + ": can't be read: " + std::strerror(error) +
                            "; give a Touchstone file that you may read");
}

std::size_t TextBytes::Read(char * bytes, std::size_t size) {
  std::size_t const count = std::min(size, m_Rest.size());
  std::copy_n(m_Rest.data(), count, bytes);
  m_Rest.remove_prefix(count);
  return count;
}

} // namespace rf
