#include "desktop/project/Project.h"

#include "basekit/file/FileOperations.h"
#include "basekit/text/Utf8.h"
#include "desktop/project/SourcePlace.h"

#include <filesystem>

namespace desktop {

AString const Project::kExtension(L".sproject");

namespace {

AString WithExtension(AString const & path) {
  return path.EndsWith(Project::kExtension) ? path : path + Project::kExtension;
}

// All that belongs to a project lies beside the file itself: a link to it is no other project.
LongFileName BehindLinks(LongFileName const & file) {
  std::error_code error;
  std::filesystem::path const given(text::ToUtf8(file.FilePath()));
  if (!std::filesystem::is_symlink(given, error))
    return file;
  std::filesystem::path const real = std::filesystem::canonical(given, error);
  return error ? file : LongFileName(text::FromUtf8(real.string()));
}

} // namespace

Project::Project(AString const & path) : m_file(BehindLinks(LFN_AbsolutePath(WithExtension(path)))) {}

AString Project::GetName() const { return m_file.Name(); }

LongFileName Project::GetResultsFolder() const {
  LongFileName folder(GetFolder(), GetName() + L".results");
  folder.MakeItDirectory();
  return folder;
}

void Project::GetResultsFolder(LongFileName & folder, bool) const { folder = GetResultsFolder(); }

bool Project::CreateResultsFolder(LongFileName const & folder) {
  return !m_isReadOnly && LFN_CreateDirectoryAndParents(folder);
}

LongFileName Project::GetSourceFile() const {
  return m_sourceFiles.empty() ? LongFileName() : PlaceOf(m_sourceFiles.front(), GetFolder());
}

} // namespace desktop
