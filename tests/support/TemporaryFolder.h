#pragma once

#include <filesystem>

namespace support {

/// A new empty folder, removed with its content at the end.
class TemporaryFolder {
public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(TemporaryFolder const &) = delete;
  TemporaryFolder & operator=(TemporaryFolder const &) = delete;

  std::filesystem::path const & Path() const { return m_path; }
  std::filesystem::path operator/(std::filesystem::path const & name) const { return m_path / name; }

private:
  std::filesystem::path m_path;
};

} // namespace support
