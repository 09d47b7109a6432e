#include "viewkit/library/FilePrefix.h"

#include <algorithm>
#include <cerrno>

namespace library {

namespace {

file::FileStatus Refusal() { return {EROFS, L"an earlier state of a file can't be changed"}; }

} // namespace

file::FileStatus FilePrefix::Read(std::uint64_t offset, std::span<char> into, std::size_t & got) {
  std::uint64_t const left = m_length > offset ? m_length - offset : 0;
  return m_whole->Read(offset, into.first(static_cast<std::size_t>(std::min<std::uint64_t>(into.size(), left))), got);
}

file::FileStatus FilePrefix::Describe(file::FileInfo & info) {
  file::FileStatus const status = m_whole->Describe(info);
  info.length = std::min(info.length, m_length);
  return status;
}

file::FileStatus FilePrefix::Write(std::uint64_t, std::span<std::string_view const>) { return Refusal(); }

file::FileStatus FilePrefix::Truncate(std::uint64_t) { return Refusal(); }

file::FileStatus FilePrefix::Sync() { return Refusal(); }

file::FileStatus FilePrefix::TryLock() { return Refusal(); }

file::FileStatus FilePrefix::Unlock() { return Refusal(); }

} // namespace library
