#pragma once

#include "basekit/file/LongFileName.h"

namespace desktop {

class Project;

/// A copy of a project's state (project file, autosave, note of a save, results folder) in a temporary folder that goes
/// with this object.  What would happen to the project can be tried on it.  Failures are Errors: kLocked while another
/// process writes the library, kStorage when there is no room for the copy.
class ProjectCopy {
public:
  enum class Of {
    kAll,
    /// Project file, autosave and library alone, of one moment, also while another process writes them; it is never
    /// held up.  A session that opens the copy finds what is not saved as after a crash of that process, without its
    /// result files.
    kBesideWriter
  };

  explicit ProjectCopy(Project const & project, Of what = Of::kAll);
  ~ProjectCopy();
  ProjectCopy(ProjectCopy const &) = delete;
  ProjectCopy & operator=(ProjectCopy const &) = delete;

  /// Of the project file.
  AString Path() const;
  /// A text that names files of the copy, with the project's own ones in their place.
  AString ToldOfProject(AString const & text) const;

private:
  void CopyFiles(Project const & project);
  void CopyBesideWriter(Project const & project);
  bool CopyStateAndLibrary(Project const & project);
  void Copy(LongFileName const & from, LongFileName const & to) const;

  LongFileName m_original; ///< the project's folder
  LongFileName m_folder;
  AString m_fileName;
};

} // namespace desktop
