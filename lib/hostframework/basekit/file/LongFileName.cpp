#include "basekit/file/LongFileName.h"

#include "basekit/file/FileOperations.h"

namespace {

bool IsDirectoryName(AString const & path) { return !path.empty() && path[path.size() - 1] == L'/'; }

std::size_t ExtensionStart(AString const & name) {
  std::size_t const dot = name.rfind(L'.');
  return dot == AString::npos || dot == 0 || name == L".." ? name.size() : dot;
}

} // namespace

LongFileName::LongFileName(LongFileName const & directory, AString const & name)
    : m_path((directory + name).FilePath()) {}

AString LongFileName::DirPath() const {
  std::size_t const slash = m_path.rfind(L'/');
  return slash == AString::npos ? AString() : m_path.substr(0, slash + 1);
}

AString LongFileName::NameAndExtension() const {
  std::size_t end = m_path.size();
  while (end > 0 && m_path[end - 1] == L'/')
    --end;
  AString const path = m_path.substr(0, end);
  std::size_t const slash = path.rfind(L'/');
  return slash == AString::npos ? path : path.substr(slash + 1);
}

AString LongFileName::Name() const {
  AString const whole = NameAndExtension();
  return IsDirectoryName(m_path) ? whole : whole.substr(0, ExtensionStart(whole));
}

AString LongFileName::Extension() const {
  AString const whole = NameAndExtension();
  return IsDirectoryName(m_path) ? AString() : whole.substr(ExtensionStart(whole));
}

bool LongFileName::Exists() const { return LFN_Exists(*this); }

bool LongFileName::IsDirectory() const { return IsDirectoryName(m_path) || LFN_IsDirectory(*this); }

void LongFileName::MakeItDirectory() {
  if (!m_path.empty() && !IsDirectoryName(m_path))
    m_path += L'/';
}

LongFileName operator+(LongFileName const & directory, AString const & tail) {
  if (directory.IsEmpty())
    return LongFileName(tail);
  if (tail.empty())
    return directory;
  LongFileName head = directory;
  head.MakeItDirectory();
  std::size_t start = 0;
  while (start < tail.size() && tail[start] == L'/')
    ++start;
  return LongFileName(head.FilePath() + tail.substr(start));
}
