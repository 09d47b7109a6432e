#include "desktop/project/Project.h"

#include "basekit/file/FileOperations.h"

namespace desktop {

AString const Project::kExtension(L".sproject");

namespace {

AString WithExtension(AString const & path) {
  return path.EndsWith(Project::kExtension) ? path : path + Project::kExtension;
}

} // namespace

Project::Project(AString const & path) : m_file(LFN_AbsolutePath(WithExtension(path))) {}

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
  return m_sourceFiles.empty() ? LongFileName() : m_sourceFiles.front().PathIn(GetFolder());
}

} // namespace desktop
