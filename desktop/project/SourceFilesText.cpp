// One line for each file: "41-9a3f21c7 lowpass.cir".
#include "desktop/project/SourceFilesText.h"

#include <algorithm>

namespace desktop {

namespace {

AString LineOf(SourceFile const & file) {
  return AString::Format(L"%lx-%lx ", static_cast<unsigned long>(file.size),
                         static_cast<unsigned long>(file.checksum)) +
         file.path + L"\n";
}

bool HasPath(SourceFiles const & files, AString const & path) {
  return std::any_of(files.begin(), files.end(), [&path](SourceFile const & file) { return file.path == path; });
}

} // namespace

AString FilesText(SourceFiles const & files) {
  AString text;
  for (SourceFile const & file : files)
    text += LineOf(file);
  return text;
}

std::vector<AString> ChangedFiles(AString const & filesText, SourceFiles const & now) {
  std::vector<AString> changed;
  AString const present = AString(L"\n") + FilesText(now);
  for (std::size_t begin = 0; begin < filesText.size();) {
    std::size_t const end = std::min(filesText.find(L"\n", begin), filesText.size() - 1) + 1;
    AString const line = filesText.substr(begin, end - begin);
    std::size_t const blank = line.find(L" ");
    AString const path = blank == AString::npos ? AString() : line.substr(blank + 1, line.size() - blank - 2);
    if (HasPath(now, path) && present.find(AString(L"\n") + line) == AString::npos)
      changed.push_back(path);
    begin = end;
  }
  return changed;
}

} // namespace desktop
