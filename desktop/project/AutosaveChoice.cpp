#include "desktop/project/AutosaveChoice.h"

#include "basekit/file/FileOperations.h"
#include "desktop/Error.h"

namespace desktop {

namespace {

// But for what a save itself brings up to date.
bool HoldTheSame(ProjectRecord const & a, ProjectRecord b) {
  b.generation = a.generation;
  b.ids = a.ids;
  b.edits = a.edits;
  b.pendingTexts = a.pendingTexts;
  return EncodeProject(a, ProjectFileKind::kProject) == EncodeProject(b, ProjectFileKind::kProject);
}

// What is wrong, without the name of the file and the remedy for project files.
AString ReasonOf(Error const & error, LongFileName const & file) {
  AString const text = text::FromUtf8(error.what());
  std::size_t const from = file.FilePath().size() + 2;
  return AString(text.View().substr(from, text.View().rfind(L"; ") - from));
}

} // namespace

AutosaveChoice JudgeAutosave(LongFileName const & file, ProjectRecord const & saved) {
  using Fate = AutosaveChoice::Fate;
  AutosaveChoice choice;
  if (!LFN_Exists(file))
    return choice;
  try {
    choice.record = DecodeProject(ReadProjectBytes(file), ProjectFileKind::kAutosave, file);
  } catch (Error const & error) {
    choice.fate = Fate::kForeign;
    choice.why = ReasonOf(error, file);
    choice.changesDesign = true;
    return choice;
  }
  choice.changesDesign = !HoldTheSame(saved, choice.record);
  if (choice.record.generation == saved.generation)
    choice.fate = Fate::kWins;
  else if (!choice.changesDesign)
    choice.fate = Fate::kObsolete;
  else {
    choice.fate = Fate::kForeign;
    choice.why = L"it continues another state of the project file";
  }
  return choice;
}

} // namespace desktop
