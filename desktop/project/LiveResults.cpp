#include "desktop/project/LiveResults.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_named_value.h"
#include "desktop/Error.h"
#include "desktop/product/SetupsOfDesign.h"
#include "desktop/project/AutosaveChoice.h"
#include "desktop/project/Project.h"
#include "desktop/project/ProjectFile.h"
#include "desktop/project/ProjectLock.h"
#include "solutionmanager/address/PackedKeyText.h"
#include "solutionmanager/store/SolutionFileManager.h"

namespace desktop {

namespace {

using library::LibraryReader;

constexpr auto kGood = CStreamioLibrary::kLibSuccess;
/// A writer may commit between the reading of the two files; then both are read again, so many times.
constexpr int kMostRereads = 5;

} // namespace

LiveResults::LiveResults(Project const & project, AString const & libraryPath, std::optional<std::uint64_t> savedLength)
    : m_project(project), m_path(libraryPath), m_savedLength(savedLength) {}

bool LiveResults::HasWriter() const { return ProjectLock::IsTaken(m_project.GetLockFile()); }

// Tells whether there is anything to look at.  While a commit is on its way the private file may be out of view; then
// it is too early for a look.
bool LiveResults::Refresh() {
  bool any = m_wasEarly;
  bool changed = true;
  auto result = kGood;
  if (!m_isOpen) {
    result = m_reader.Open(LongFileName(m_path), true);
    m_isOpen = result == kGood;
    any = true;
  }
  for (int count = 0; m_isOpen && result == kGood && changed && count < kMostRereads; ++count) {
    result = m_reader.Refresh(changed);
    any = any || changed;
  }
  // A library that is not there yet comes with the first result.
  if (result == CStreamioLibrary::kLibNotFound && !m_isOpen)
    return false;
  if (result != kGood)
    throw Error(ErrorKind::kProject,
                m_path + L": can't be read (" + m_reader.LastError() + L"); check what became of it");
  bool const showsPrivate = m_reader.PrivateFacts().exists;
  m_wasEarly = any && !showsPrivate &&
               LibraryReader::StateOfPrivateFile(LongFileName(m_path)) == LibraryReader::PrivateFile::InUse;
  return any && !m_wasEarly;
}

std::map<AString, AString, AString::NoCaseLess> LiveResults::ReadNames() {
  std::map<AString, AString, AString::NoCaseLess> names;
  io::CBlock map(SolutionFileManager::kRealToInternalBlkName);
  if (m_reader.Load(map) != kGood)
    return names;
  for (auto const & child : map) {
    io::CBlock_ptr<io::CBlock_named_value> const pair(child);
    AString internalName;
    if (pair && pair->Query(internalName))
      names.emplace(internalName, pair->Name());
  }
  return names;
}

// A save moves blocks as they are from one file to the other, which is no news.
bool LiveResults::IsNews(LibraryReader::Entry const & entry, Place const & place) const {
  auto const known = m_places.find(entry.name);
  if (known == m_places.end())
    return !m_isFirst || entry.isPrivate || (m_savedLength && entry.offset >= *m_savedLength);
  Place const & before = known->second;
  return before.salt == place.salt ? before.offset != place.offset : before.length != place.length;
}

std::vector<LiveResults::News> LiveResults::Look() {
  std::vector<News> news;
  if (!Refresh())
    return news;
  Places places;
  std::vector<AString> blocks;
  for (auto const & entry : m_reader.List()) {
    auto const salt = (entry.isPrivate ? m_reader.PrivateFacts() : m_reader.PublicFacts()).salt;
    Place const place{salt, entry.offset, entry.length};
    if (IsNews(entry, place))
      blocks.push_back(entry.name);
    places.emplace(entry.name, place);
  }
  m_places = std::move(places);
  m_isFirst = false;
  if (blocks.empty())
    return news;
  auto const names = ReadNames();
  for (AString const & block : blocks) {
    auto const name = names.find(block);
    News one;
    one.blockName = block;
    if (name != names.end() && UnpackQuickly(name->second, one.key))
      news.push_back(std::move(one));
  }
  return news;
}

bool LiveResults::Load(News const & news, io::CBlock & block) {
  block = io::CBlock(news.blockName);
  return m_reader.Load(block) == kGood;
}

LiveResults::End LiveResults::HowItEnded() const {
  switch (LibraryReader::StateOfPrivateFile(LongFileName(m_path))) {
  case LibraryReader::PrivateFile::InUse:
    return End::kGoesOn;
  case LibraryReader::PrivateFile::LeftByCrash:
    return End::kCrashed;
  case LibraryReader::PrivateFile::Unreadable:
    return End::kUnreadable;
  case LibraryReader::PrivateFile::ClosedInOrder:
    return End::kUnsaved;
  default:
    return End::kSaved;
  }
}

AString LiveResults::NameOfSetup(long setupID) {
  auto const known = m_setupNames.find(setupID);
  if (known != m_setupNames.end())
    return known->second;
  ReadSetupNames();
  // Once for each setup: one that no file tells of keeps its number.
  return m_setupNames.emplace(setupID, AString::Format(L"setup %d", setupID)).first->second;
}

// The writer's autosave, which it writes before it solves, knows setups that are not saved yet.
void LiveResults::ReadSetupNames() {
  try {
    LongFileName const file = m_project.GetFile();
    ProjectRecord const saved = DecodeProject(ReadProjectBytes(file), ProjectFileKind::kProject, file);
    AutosaveChoice const autosave = JudgeAutosave(m_project.GetAutosaveFile(), saved);
    bool const wins = autosave.fate == AutosaveChoice::Fate::kWins;
    for (SetupOfDesign const & setup : SetupsOfDesign(wins ? autosave.record.module : saved.module))
      m_setupNames.emplace(setup.id, setup.name);
  } catch (Error const &) {
    // A save may be on its way; the setup is then told by its number.
  }
}

} // namespace desktop
