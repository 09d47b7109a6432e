#pragma once

#include <filesystem>

namespace command {

/// A new empty folder in the folder for temporary files (TMPDIR), removed with its content at the end.
class ScratchFolder {
public:
  /// Throws SourceError when it can't be made.
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(ScratchFolder const &) = delete;
  ScratchFolder & operator=(ScratchFolder const &) = delete;

  std::filesystem::path const & Path() const { return m_path; }

private:
  std::filesystem::path m_path;
};

} // namespace command
