#include "desktop/project/PointExport.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/PlaceInFolder.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableValues.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/PointBlocks.h"
#include "desktop/product/PointFiles.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/NewFile.h"
#include "desktop/project/Project.h"
#include "desktop/project/ProjectFile.h"
#include "desktop/project/RecordParts.h"
#include "desktop/project/Session.h"
#include "desktop/project/SourceCopies.h"
#include "desktop/project/SourcePlace.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"
#include "solutionmanager/transfer/ExportVariationContextObject.h"
#include "viewkit/library/LibraryReader.h"

#include <functional>

namespace desktop {

namespace {

constexpr auto kSuccess = CStreamioLibrary::kLibSuccess;

using Visit = std::function<void(BaseSimulationSetup const & setup, BaseSolution const & solution,
                                 BaseSolutionVariation const & variation)>;

void ForEachVariation(Session & session, Visit const & visit) {
  for (auto const & [id, setup] : session.GetManager().GetSetups())
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      for (auto const & [index, variation] : solution->GetVariations())
        visit(*setup, *solution, *variation);
}

void ForEachSolved(Session & session, Visit const & visit) {
  ForEachVariation(session, [&visit](BaseSimulationSetup const & setup, BaseSolution const & solution,
                                     BaseSolutionVariation const & variation) {
    if (solution.HasSolutionData(variation.GetDesignVariationKey(), variation.GetVersionID()))
      visit(setup, solution, variation);
  });
}

std::string Bytes(BaseSolutionManager const & manager, AString const & name) {
  std::string bytes;
  io::CBlock block(name);
  if (manager.LoadSingleBlock(block) == kSuccess)
    static_cast<void>(io::EncodeBlock(block, io::Form::Binary, io::kExactDigits, bytes)); // Too deep: stays empty.
  return bytes;
}

file::FileInfo Look(LongFileName const & path) {
  file::FileInfo info;
  static_cast<void>(file::FileSystem().Describe(path, info)); // What can't be looked at is not there.
  return info;
}

// Found from any folder.
SourceFiles WithFullPaths(SourceFiles files, LongFileName const & projectFolder) {
  for (SourceFile & file : files)
    file.path = LFN_AbsolutePath(PlaceOf(file, projectFolder)).FilePath();
  return files;
}

} // namespace

PointExport::PointExport(Session & session, AString const & variation, State state)
    : m_session(session), m_variation(variation), m_state(state) {
  m_saved = LookAtSaved();
}

AString PointExport::FindPoint(Session & session, AString const & variation) {
  AString found;
  ForEachSolved(session, [&](BaseSimulationSetup const &, BaseSolution const &, BaseSolutionVariation const & solved) {
    if (AString const text = solved.GetDesignVariationKey();
        found.empty() && VariableValues::AreVariationKeysEqual(text, variation))
      found = text;
  });
  return found;
}

std::vector<AString> PointExport::SolvedVariations(Session & session) {
  std::vector<AString> texts;
  std::set<AString> seen;
  ForEachSolved(session, [&](BaseSimulationSetup const &, BaseSolution const &, BaseSolutionVariation const & solved) {
    if (AString const text = solved.GetDesignVariationKey(); seen.insert(text).second)
      texts.push_back(text);
  });
  return texts;
}

std::vector<PointExport::Part> PointExport::Parts() const {
  std::vector<Part> parts;
  BaseSolution const * last = nullptr;
  ForEachSolved(m_session, [&](BaseSimulationSetup const & setup, BaseSolution const & solution,
                               BaseSolutionVariation const & solved) {
    if (!VariableValues::AreVariationKeysEqual(solved.GetDesignVariationKey(), m_variation))
      return;
    if (&solution != last)
      parts.push_back({setup.GetName(), solution.GetSolutionName(), false});
    last = &solution;
    parts.back().isValid = parts.back().isValid || solved.IsVariationValid();
  });
  return parts;
}

std::uint64_t PointExport::LibraryLength() const {
  file::FileInfo info;
  LongFileName const library(m_session.GetManager().GetQsolPath());
  return file::FileSystem().Describe(library, info).Ok() ? info.length : 0;
}

// Nothing when that can't be told.
std::optional<PointExport::Saved> PointExport::LookAtSaved() const {
  file::FileInfo const library = Look(LongFileName(m_session.GetManager().GetQsolPath()));
  LongFileName const file = m_session.GetProject().GetFile();
  if (m_state != State::kSaved || library.kind != file::FileKind::File)
    return std::nullopt;
  try {
    long const generation = DecodeProject(ReadProjectBytes(file), ProjectFileKind::kProject, file).generation;
    return Saved{generation, library.length, library.node};
  } catch (Error const &) {
    return std::nullopt;
  }
}

void PointExport::Write(LongFileName const & folder) {
  auto const refuseOtherState = [this] {
    auto const now = LookAtSaved();
    if (now && m_saved && *now != *m_saved)
      throw Error(ErrorKind::kLocked, m_session.GetProject().GetFile().FilePath() +
                                          L": another process saved it during the export; try again");
  };
  try {
    WriteProject(folder);
  } catch (Error const &) {
    refuseOtherState();
    throw;
  }
  refuseOtherState();
}

void PointExport::WriteProject(LongFileName const & folder) {
  LongFileName const results = folder + (m_session.GetProject().GetName() + L".results/");
  LongFileName const file = folder + (m_session.GetProject().GetName() + Project::kExtension);
  WriteResults(results);
  ProjectRecord record = MakeRecord();
  TakeValuesOfPoint(record);
  SourceCopies const sources(m_session, folder);
  m_whyNoSources = sources.WhyNot();
  if (!sources.Files().empty())
    record.sources = sources.Files();
  NewFile(file, EncodeProject(record, ProjectFileKind::kProject)).Install();
  SaveWhatOpeningAdds(file);
  Check(file);
}

// Imported data holds at all variations, and the ID of the text for these is not in the table of one point: whoever
// opens the project first would issue it, and have it as unsaved work.
void PointExport::SaveWhatOpeningAdds(LongFileName const & file) const {
  if (m_session.GetManager().GetImportedSetups().empty())
    return;
  auto const exported = Session::Open(file.FilePath(), Session::Access::kWrite);
  if (exported->HasUnsavedChanges())
    exported->Save();
}

// A library that went on since the save shows what was saved block by block alone.
bool PointExport::AssumesSavedState() const { return m_state == State::kSaved && !m_session.GetSavedLength(); }

void PointExport::WriteResults(LongFileName const & results) {
  ProductSolutionManager const & manager = m_session.GetManager();
  {
    ExportVariationContextObject const exporting(manager, manager.GetVariationID(m_variation), AssumesSavedState());
    PointBlocks const point(manager);
    m_blocks = point.NamesOfPoint();
    for (AString const & name : point.NamesOfOthers())
      m_foreign.insert(manager.GetSolutionFileManager().GetInternalBlockName(name));
  }
  if (!manager.ExportDesignPointResults(results, m_variation, AssumesSavedState()))
    throw Error(ErrorKind::kStorage, results.FilePath() + L": the library can't be copied (" + LFN_LastError() +
                                         L"); make room or get permission, and try again");
  AString const designFolder = manager.GetResultFilesFolder(false).substr(manager.GetProjectResultsDir().size());
  CheckFiles(results + designFolder);
}

void PointExport::CheckFiles(LongFileName const & folder) {
  ProductSolutionManager const & manager = m_session.GetManager();
  LongFileName const results(manager.GetResultFilesFolder(false));
  PointFiles const point =
      AssumesSavedState() ? PointFiles::Saved(manager, m_variation) : PointFiles::Unsaved(manager, m_variation);
  for (auto const * const names : {&point.files, &point.dirs})
    for (AString const & name : *names) {
      if (!LFN_IsPlaceInside(results, name))
        RefuseLink(results + name);
      auto const renamed = point.renamed.find(name);
      CheckCopy(results + name, folder + (renamed == point.renamed.end() ? name : renamed->second));
      ++m_files;
    }
}

void PointExport::CheckCopy(LongFileName const & source, LongFileName const & copy) const {
  file::FileInfo const wanted = Look(source);
  file::FileInfo const made = Look(copy);
  if (wanted.isLink)
    RefuseLink(source);
  if (wanted.kind == file::FileKind::None)
    RefusePoint(AString(L"there is no ") + source.FilePath() +
                L" any more; solve it anew with `solvedesk solve --again`");
  bool const isFolder = wanted.kind == file::FileKind::Folder;
  std::vector<AString> names;
  bool const isListed = !isFolder || file::FileSystem().List(source, names).Ok();
  if (made.kind != wanted.kind || !isListed || (!isFolder && made.length != wanted.length))
    throw Error(ErrorKind::kStorage, copy.FilePath() + L": can't be copied whole from " + source.FilePath() +
                                         L"; make room or get permission, and try again");
  for (AString const & name : names)
    CheckCopy(source + name, copy + name);
}

ProjectRecord PointExport::MakeRecord() const {
  ProductSolutionManager const & manager = m_session.GetManager();
  ExportVariationContextObject const exporting(manager, manager.GetVariationID(m_variation), AssumesSavedState());
  ProjectRecord record = MakeRecordOf({m_session.GetProduct(), m_session.GetProject(), m_session.GetDesign(), manager,
                                       m_session.GetEditLog(), m_session.GetReports()},
                                      ReadMethod::kDefinitionOnly);
  record.generation = 1;
  record.sources = WithFullPaths(record.sources, m_session.GetProject().GetFolder());
  record.connections.Clear(); // A refresh there would write over the files of this project.
  return record;
}

// As a project that solved this point alone has them.
void PointExport::TakeValuesOfPoint(ProjectRecord & record) const {
  Design point(m_session.GetProject(), record.designName, record.designID, record.productName);
  for (Variable const * const variable : m_session.GetDesign().GetVariables()) {
    AString value = variable->GetValueText();
    SolutionVariationKey::GetValueString(m_variation, variable->GetName(), value);
    point.AddVariable(variable->GetName(), value);
  }
  record.design.Clear();
  point.Write(record.design);
}

// A cut that failed leaves the library of all points, blocks that no name leads to, or definitions that tell them.
void PointExport::CheckNothingForeign(Session & exported) const {
  AString const library = exported.GetManager().GetQsolPath();
  library::LibraryReader reader;
  bool isClean = reader.OpenAlone(LongFileName(library)) == kSuccess;
  ForEachVariation(exported, [&](BaseSimulationSetup const &, BaseSolution const &, BaseSolutionVariation const & any) {
    isClean = isClean && VariableValues::AreVariationKeysEqual(any.GetDesignVariationKey(), m_variation);
  });
  if (isClean)
    for (auto const & entry : reader.List())
      isClean = isClean && !m_foreign.contains(entry.name);
  if (!isClean)
    throw Error(ErrorKind::kStorage,
                library + L": data of other points can't be taken out of it; make room on the disk, and try again");
}

void PointExport::Check(LongFileName const & file) const {
  auto const exported = Session::Open(file.FilePath(), Session::Access::kReadOnly);
  CheckNothingForeign(*exported);
  for (AString const & name : m_blocks) {
    std::string const bytes = Bytes(m_session.GetManager(), name);
    if (bytes.empty())
      RefusePoint(AString(L"its data can't be read; `qsol verify` tells what is wrong with ") +
                  m_session.GetManager().GetQsolPath() + L", and `solvedesk solve --again` solves it anew");
    if (Bytes(exported->GetManager(), name) != bytes)
      throw Error(ErrorKind::kStorage, exported->GetManager().GetQsolPath() +
                                           L": can't be written whole; make room on the disk, and try again");
  }
  if (int const lost = exported->GetManager().CountLostResultFiles(); lost > 0)
    RefusePoint(
        AString::Format(L"%d of its result files can't be found; solve it anew with `solvedesk solve --again`", lost));
}

void PointExport::RefuseLink(LongFileName const & file) const {
  RefusePoint(AString(L"links are not followed, and one leads to ") + file.FilePath() +
              L"; put the files themselves in its place");
}

void PointExport::RefusePoint(AString const & what) const {
  throw Error(ErrorKind::kProject, m_session.GetProject().GetFile().FilePath() + L": the point '" + m_variation +
                                       L"' can't be exported: " + what);
}

} // namespace desktop
