#include "desktop/project/AutosaveChoice.h"

#include "basekit/file/FileOperations.h"
#include "desktop/Error.h"
#include "desktop/product/ResultStores.h"

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

// Result files are results, no change of the design.
ProjectRecord WithoutStores(ProjectRecord record) {
  io::CBlock module(record.module.Name());
  for (auto const & item : record.module)
    if (item->Name() != ResultStores::kBlockName)
      module << item;
  record.module = std::move(module);
  return record;
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
  choice.changesDesign = !HoldTheSame(WithoutStores(saved), WithoutStores(choice.record));
  if (choice.record.generation == saved.generation)
    choice.fate = Fate::kWins;
  else if (HoldTheSame(saved, choice.record))
    choice.fate = Fate::kObsolete;
  else {
    choice.fate = Fate::kForeign;
    choice.why = L"it continues another state of the project file";
  }
  return choice;
}

} // namespace desktop
