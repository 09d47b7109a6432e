#include "viewkit/library/LibraryLock.h"

#include <algorithm>

namespace library {

namespace {

std::vector<LibraryLock *> & AllLocks() {
  static std::vector<LibraryLock *> locks;
  return locks;
}

} // namespace

LibraryLock::LibraryLock() { AllLocks().push_back(this); }

LibraryLock::~LibraryLock() {
  Release();
  std::erase(AllLocks(), this);
}

file::FileStatus LibraryLock::Add(file::IFile & file) {
  file::FileStatus status = file.TryLock();
  if (status.Ok())
    m_files.push_back(&file);
  return status;
}

void LibraryLock::Forget(file::IFile & file) { std::erase(m_files, &file); }

void LibraryLock::Release() {
  for (auto * const file : m_files)
    static_cast<void>(file->Unlock()); // Closing the file ends the lock as well.
  m_files.clear();
}

bool LibraryLock::TakeFromThisProcess(file::IFile & file) {
  file::FileInfo wanted;
  if (!file.Describe(wanted).Ok())
    return false;
  for (auto * const lock : AllLocks())
    for (auto * const held : lock->m_files) {
      file::FileInfo info;
      if (held != &file && held->Describe(info).Ok() && info.IsSameFile(wanted)) {
        lock->Release();
        return true;
      }
    }
  return false;
}

} // namespace library
