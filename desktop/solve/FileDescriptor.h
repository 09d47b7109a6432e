#pragma once

#include <unistd.h>
#include <utility>

namespace desktop {

/// Owner of an open file descriptor.
class FileDescriptor {
public:
  FileDescriptor() = default;
  explicit FileDescriptor(int fd) : m_fd(fd) {}
  FileDescriptor(FileDescriptor && other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
  FileDescriptor & operator=(FileDescriptor && other) noexcept {
    std::swap(m_fd, other.m_fd);
    return *this;
  }
  ~FileDescriptor() { Close(); }

  /// -1 without a file.
  int Get() const { return m_fd; }
  void Close() {
    if (m_fd >= 0)
      ::close(m_fd);
    m_fd = -1;
  }

private:
  int m_fd = -1;
};

} // namespace desktop
