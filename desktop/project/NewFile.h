#pragma once

#include "basekit/file/LongFileName.h"

#include <string_view>

namespace desktop {

/// New content of a file, written and synced beside the old one; Install puts it in its place in one step.  Until then,
/// and when it fails, the old file stands as it was.  Failures are Errors of kind kStorage.
class NewFile {
public:
  NewFile(LongFileName const & target, std::string_view content);
  ~NewFile();
  NewFile(NewFile const &) = delete;
  NewFile & operator=(NewFile const &) = delete;

  /// Removes what a process that died had written beside the file; true too when there is nothing.
  static bool RemoveLeft(LongFileName const & target);
  void Install();
  /// True too when Install put it in its place and could not make that survive a loss of power, which is an Error.
  bool IsInstalled() const { return m_isInstalled; }

private:
  LongFileName m_target;
  LongFileName m_beside;
  bool m_isInstalled = false;
};

} // namespace desktop
