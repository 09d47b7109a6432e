#pragma once

#include "CoreInterfaces/desktop/IProject.h"
#include "basekit/file/LongFileName.h"
#include "desktop/hub/Connection.h"
#include "desktop/project/SourceBase.h"

#include <functional>
#include <vector>

namespace desktop {

/// Where a project's files stand, and the source it was made from.  For a project NAME in a folder these are
/// NAME.sproject, NAME.sproject.auto, NAME.sproject.lock, NAME.sproject.saving and the folder NAME.results/.  It opens
/// none of them.
class Project : public IProject {
public:
  static AString const kExtension;

  /// The path may come with or without its extension; a relative one counts from the current folder, now.
  explicit Project(AString const & path);

  // IProject
  AString GetName() const override;
  void GetResultsFolder(LongFileName & folder, bool forWriting) const override;
  /// Refused for a project that is read only.
  bool CreateResultsFolder(LongFileName const & folder) override;
  bool HasUnsavedChanges() const override { return m_hasUnsavedChanges && m_hasUnsavedChanges(); }

  LongFileName const & GetFile() const { return m_file; }
  LongFileName GetAutosaveFile() const { return m_file.FilePath() + L".auto"; }
  LongFileName GetLockFile() const { return m_file.FilePath() + L".lock"; }
  /// There while a save moves files, and after one that was interrupted.
  LongFileName GetSaveNote() const { return m_file.FilePath() + L".saving"; }
  LongFileName GetResultsFolder() const;
  LongFileName GetFolder() const { return m_file.DirPath(); }

  /// The file that was named when the project was made, by its full path.
  LongFileName GetSourceFile() const;
  /// All files of the source as they were when the project read them, the one that was named first.
  SourceFiles const & GetSourceFiles() const { return m_sourceFiles; }
  void SetSourceFiles(SourceFiles const & files) { m_sourceFiles = files; }

  SourceBase const & GetSourceBase() const { return m_sourceBase; }
  void SetSourceBase(SourceBase const & base) { m_sourceBase = base; }

  /// To other projects, in the order in which they were made; see Hub.
  Connections const & GetConnections() const { return m_connections; }
  void SetConnections(Connections const & connections) { m_connections = connections; }

  bool IsReadOnly() const { return m_isReadOnly; }
  void SetReadOnly(bool readOnly) { m_isReadOnly = readOnly; }
  /// Who has the project open answers for it.
  void SetUnsavedChangesQuestion(std::function<bool()> question) { m_hasUnsavedChanges = std::move(question); }

private:
  LongFileName m_file;
  SourceFiles m_sourceFiles;
  SourceBase m_sourceBase;
  Connections m_connections;
  bool m_isReadOnly = false;
  std::function<bool()> m_hasUnsavedChanges;
};

} // namespace desktop
