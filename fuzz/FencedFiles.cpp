#include "fuzz/FencedFiles.h"

#include "basekit/diag/Assert.h"
#include "basekit/file/LongFileName.h"
#include "basekit/file/PlaceInFolder.h"

#include <cstdlib>

FencedFiles::FencedFiles(AString const & fence) : m_fence(fence), m_formerlyIgnored(IgnoreAllAsserts_G) {
  IgnoreAllAsserts_G = true;
}

FencedFiles::~FencedFiles() { IgnoreAllAsserts_G = m_formerlyIgnored; }

void FencedFiles::Check(LongFileName const & path) const {
  AString const & text = path.FilePath();
  if (!text.StartsWith(m_fence) || !LFN_IsTextOfPlaceInside(text.substr(m_fence.size())))
    std::abort();
}

file::FileStatus FencedFiles::Open(LongFileName const & path, file::OpenMode mode,
                                   std::unique_ptr<file::IFile> & opened) {
  if (mode != file::OpenMode::Read)
    Check(path);
  return MemoryFiles::Open(path, mode, opened);
}

file::FileStatus FencedFiles::Rename(LongFileName const & from, LongFileName const & to) {
  Check(from);
  Check(to);
  return MemoryFiles::Rename(from, to);
}

file::FileStatus FencedFiles::RemoveFile(LongFileName const & path) {
  Check(path);
  return MemoryFiles::RemoveFile(path);
}

file::FileStatus FencedFiles::RemoveFolder(LongFileName const & path) {
  Check(path);
  return MemoryFiles::RemoveFolder(path);
}

bool FencedFiles::Stands(AString const & path) {
  file::FileInfo info;
  return Describe(path, info).Ok() && info.kind != file::FileKind::None;
}
