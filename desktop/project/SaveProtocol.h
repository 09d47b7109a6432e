#pragma once

#include "basekit/file/LongFileName.h"

#include <vector>

namespace desktop {

class Project;

/// What makes the save of a project one step, though it moves result files: a note beside the project file, and a
/// backup area in the results folder that holds what the save takes away.
///
///     Begin ... changes below the results folder ... CheckWhole ... the new project file takes its place ... Finish
///
/// and TakeBack instead of the last two.  The project file tells which side of the step an interrupted save stands on:
/// its generation is that of the note, or the next one.  The library is no part of it; SavedLibrary tells how far that
/// is saved.  Failures are Errors of kind kStorage.
class SaveProtocol {
public:
  enum class Left {
    kNothing, ///< no save was interrupted
    kBack,    ///< one that did not come to its step: files go back to where they were
    kForward, ///< one that did: what it took away goes for good
    kUnknown  ///< there is an area, and nothing tells which of the two
  };

  explicit SaveProtocol(Project const & project);

  /// Refused while something is left to settle.
  void Begin(long generation);
  /// That all that was done since Begin is done, and would survive a loss of power.
  void CheckWhole() const;
  /// What the save took away goes, then the autosave, at last the note.  False when some of it is left for Settle.
  bool Finish();
  /// Files stand as they did at Begin; false when that is left for Settle.
  bool TakeBack();

  /// Changes nothing.
  Left Judge(long generation) const;
  /// Carries out what Judge tells, with the project file's generation; can be repeated after it was cut short.  An
  /// Error of kind kProject where that is kUnknown.
  Left Settle(long generation) const;
  /// The full paths of files and folders that an interrupted save touched.
  std::vector<AString> TouchedFiles() const;

private:
  bool Restore() const;
  void RemoveAutosave(long generation) const;
  bool RemoveNote() const;

  LongFileName m_projectFile;
  LongFileName m_autosave;
  LongFileName m_note;
  LongFileName m_results;
  LongFileName m_area;
  bool m_hasBegun = false;
};

} // namespace desktop
