// The note is a block in the text form, written in one step before anything is moved, removed as the last thing:
//
//     Saving {
//       Generation = 3
//     }
#include "desktop/project/SaveProtocol.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "desktop/Error.h"
#include "desktop/project/NewFile.h"
#include "desktop/project/Project.h"
#include "desktop/project/ProjectFile.h"
#include "viewkit/backup/BackupArea.h"

#include <optional>
#include <utility>

namespace desktop {

namespace {

constexpr std::size_t kMostBytes = 4096;

io::CBlock NoteOf(long generation) {
  io::CBlock note(L"Saving");
  note << io::named(L"Generation", generation);
  return note;
}

std::optional<long> GenerationOf(LongFileName const & path) {
  std::unique_ptr<file::IFile> opened;
  std::string bytes(kMostBytes, '\0');
  std::size_t got = 0;
  io::CBlock note(L"Saving");
  long generation = -1;
  if (!file::FileSystem().Open(path, file::OpenMode::Read, opened).Ok() || !opened->Read(0, bytes, got).Ok())
    return {};
  bytes.resize(got);
  if (!io::DecodeBlock(bytes, io::Form::Text, note))
    return {};
  note >> io::named(L"Generation", generation);
  return note.Found() ? std::optional(generation) : std::nullopt;
}

[[noreturn]] void Fail(LongFileName const & place, AString const & what) {
  throw Error(ErrorKind::kStorage, place.FilePath() + L": " + what + L" (" + LFN_LastError() +
                                       L"); make room or get permission, and try again");
}

} // namespace

SaveProtocol::SaveProtocol(Project const & project)
    : m_projectFile(project.GetFile()), m_autosave(project.GetAutosaveFile()), m_note(project.GetSaveNote()),
      m_results(project.GetResultsFolder()), m_area(m_results + AString(L"saving/")) {}

void SaveProtocol::Begin(long generation) {
  if (Judge(generation) != Left::kNothing)
    Fail(m_results, L"an earlier save left files there");
  m_hasBegun = true;
  std::string bytes;
  static_cast<void>(io::EncodeBlock(NoteOf(generation), io::Form::Text, io::kExactDigits, bytes)); // It is flat.
  NewFile(m_note, bytes).Install();
  if (!BackupArea::Begin(m_area, m_results))
    Fail(m_area, L"files can't be kept there while they are saved");
}

void SaveProtocol::CheckWhole() const {
  if (!BackupArea::IsOpen() || BackupArea::IsWhole())
    return;
  if (AString const obstacle = BackupArea::GetObstacle(); !obstacle.empty())
    throw Error(ErrorKind::kStorage, obstacle +
                                         L": can't be saved; a link in place of a file or folder, or a path out of "
                                         L"the results folder, is not followed: put what belongs there back, or "
                                         L"take it away, and try again");
  Fail(m_results, L"result files can't be saved");
}

bool SaveProtocol::TakeBack() { return !std::exchange(m_hasBegun, false) || Restore(); }

bool SaveProtocol::Restore() const {
  return BackupArea::Restore(m_area, m_results) && NewFile::RemoveLeft(m_projectFile) && RemoveNote();
}

bool SaveProtocol::Finish() {
  bool const isDone = !m_hasBegun || (BackupArea::Drop(m_area) &&
                                      (!LFN_Exists(m_autosave) || LFN_DeleteFile(m_autosave)) && RemoveNote());
  m_hasBegun = false;
  return isDone;
}

SaveProtocol::Left SaveProtocol::Judge(long generation) const {
  if (!LFN_Exists(m_note))
    return BackupArea::IsPending(m_area) ? Left::kUnknown : Left::kNothing;
  auto const noted = GenerationOf(m_note);
  if (!noted)
    return BackupArea::IsPending(m_area) ? Left::kUnknown : Left::kBack;
  return generation > *noted ? Left::kForward : Left::kBack;
}

SaveProtocol::Left SaveProtocol::Settle(long generation) const {
  Left const left = Judge(generation);
  switch (left) {
  case Left::kNothing:
    break;
  case Left::kUnknown:
    throw Error(ErrorKind::kProject, m_area.FilePath() + L": an interrupted save left it, and the note " +
                                         m_note.FilePath() +
                                         L" that tells how far it came can't be read; put that back, or move the "
                                         L"folder elsewhere to go on with the files as they are");
  case Left::kBack:
    if (!Restore())
      Fail(m_results, L"the files of an interrupted save can't be taken back");
    break;
  case Left::kForward:
    // The step itself first: without it nothing may be given up.
    if (!file::FileSystem().SyncFolder(m_projectFile.DirPath()).Ok() || !BackupArea::Drop(m_area))
      Fail(m_results, L"what an interrupted save left can't be removed");
    RemoveAutosave(generation);
    if (!RemoveNote())
      Fail(m_note, L"can't be removed");
    break;
  }
  return left;
}

// The save made it part of the project file.  One of this generation came behind it.
void SaveProtocol::RemoveAutosave(long generation) const {
  if (!LFN_Exists(m_autosave))
    return;
  try {
    if (DecodeProject(ReadProjectBytes(m_autosave), ProjectFileKind::kAutosave, m_autosave).generation >= generation)
      return;
  } catch (Error const &) {
    return; // What can't be read is told when it is judged.
  }
  if (!LFN_DeleteFile(m_autosave))
    Fail(m_autosave, L"can't be removed");
}

bool SaveProtocol::RemoveNote() const {
  return !LFN_Exists(m_note) || (LFN_DeleteFile(m_note) && file::FileSystem().SyncFolder(m_projectFile.DirPath()).Ok());
}

std::vector<AString> SaveProtocol::TouchedFiles() const {
  std::vector<AString> paths;
  BackupArea::ListTouched(m_area, paths);
  for (AString & path : paths)
    path = m_results.FilePath() + path;
  return paths;
}

} // namespace desktop
