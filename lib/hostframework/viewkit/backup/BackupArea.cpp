#include "viewkit/backup/BackupArea.h"

#include "basekit/diag/Assert.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/PlaceInFolder.h"
#include "viewkit/backup/BackupJournal.h"
#include "viewkit/backup/TouchedPlaces.h"

#include <algorithm>
#include <set>
#include <utility>

namespace {

using Kind = BackupEntry::Kind;

constexpr std::size_t kMostWaiting = 4096;

struct OpenArea {
  LongFileName folder;
  LongFileName root;
  /// Counted from the root; empty when it lies elsewhere.
  AString placeInRoot;
  BackupJournal journal;
  long nextNumber = 1;
  bool failed = false;
  AString obstacle;
  std::set<AString> changedFolders;

  struct Step {
    LongFileName from;
    LongFileName to;
  };
  bool isGroup = false;
  std::vector<Step> waiting;
  /// Of the steps that wait, and the places of those where nothing will stand.
  TouchedPlaces touched;
  std::set<AString> vacated;

  LongFileName Item(long number) const { return folder + AString::Format(L"%ld", number); }
  bool Note(BackupEntry const & entry) { return Flush() && journal.Append(entry); }
  /// Notes what is about to be moved and moves it, both now or with its group.
  bool Move(Kind kind, AString const & path, AString const & to, Step const & step) {
    long const number = nextNumber++;
    journal.Queue({kind, number, path, to});
    waiting.push_back(step);
    if (!isGroup)
      return Flush();
    touched.Add(path);
    kind == Kind::Kept ? void(vacated.insert(path)) : touched.Add(to);
    return waiting.size() < kMostWaiting || Flush();
  }
  bool Flush() {
    auto const steps = std::exchange(waiting, {});
    touched.Clear();
    vacated.clear();
    if (steps.empty())
      return true;
    if (!journal.Flush())
      return Done(false);
    bool isDone = true;
    for (Step const & step : steps)
      isDone = LFN_Move(step.from, step.to, kFailIfExists) && isDone;
    return Done(isDone);
  }
  /// A step about this place must see what those before it did.
  void FlushFor(AString const & path) {
    if (touched.Touches(path))
      Flush();
  }
  bool Done(bool done) {
    failed = failed || !done;
    return done;
  }
};

std::unique_ptr<OpenArea> s_open;

bool IsSameFolder(LongFileName a, LongFileName b) {
  a.MakeItDirectory();
  b.MakeItDirectory();
  return LFN_AbsolutePath(a) == LFN_AbsolutePath(b);
}

void Close(LongFileName const & area) {
  if (s_open && IsSameFolder(s_open->folder, area))
    s_open.reset();
}

AString FolderOf(LongFileName const & path) {
  AString text = path.FilePath();
  while (text.size() > 1 && text[text.size() - 1] == L'/')
    text = text.substr(0, text.size() - 1);
  return LongFileName(text).DirPath();
}

bool SyncFolderOf(LongFileName const & path) { return file::FileSystem().SyncFolder(FolderOf(path)).Ok(); }

// What is copied is not safe before its bytes are.
bool SyncAll(LongFileName const & path) {
  auto & system = file::FileSystem();
  if (!LFN_IsDirectory(path)) {
    std::unique_ptr<file::IFile> opened;
    return system.Open(path, file::OpenMode::Read, opened).Ok() && opened->Sync().Ok();
  }
  std::vector<AString> names;
  bool all = system.List(path, names).Ok();
  for (auto const & name : names)
    all = SyncAll(path + name) && all;
  return system.SyncFolder(path).Ok() && all;
}

bool IsLink(LongFileName const & path) {
  AString text = path.FilePath();
  while (text.size() > 1 && text.EndsWith(L"/"))
    text = text.substr(0, text.size() - 1);
  file::FileInfo info;
  return file::FileSystem().Describe(text, info).Ok() && info.isLink;
}

/// One lies in the other; both count from one root, without "." and ".." in them.
bool DoOverlap(AString const & a, AString const & b) {
  return a == b || a.StartsWith(b + L"/") || b.StartsWith(a + L"/");
}

AString PlaceInRoot(LongFileName const & root, LongFileName const & area) {
  AString place;
  if (!LFN_RelativeTo(LFN_ResolvedPath(root), LFN_ResolvedPath(area), place))
    return AString();
  while (place.EndsWith(L"/"))
    place = place.substr(0, place.size() - 1);
  return place;
}

AString PathInRoot(LongFileName const & path) {
  AString relative;
  if (!s_open || !LFN_RelativeTo(s_open->root, path, relative))
    return AString();
  while (!relative.empty() && relative[relative.size() - 1] == L'/')
    relative = relative.substr(0, relative.size() - 1);
  return relative;
}

bool TouchesArea(AString const & relative) {
  return !s_open->placeInRoot.empty() && DoOverlap(relative, s_open->placeInRoot);
}

/// The path in the open area's root; empty, and reported, when a link would lead elsewhere or the area itself is meant.
AString PlaceFor(LongFileName const & path) {
  AString const relative = PathInRoot(path);
  bool const isInside = relative.empty() || (LFN_IsPlaceInside(s_open->root, relative) && !TouchesArea(relative));
  KVRO_ASSERT(isInside);
  if (!isInside)
    s_open->failed = true;
  return isInside ? relative : AString();
}

// Nothing can take the place of a folder that it lies in, or move into itself.
bool LiesInOther(AString const & a, AString const & b) {
  TouchedPlaces places;
  places.Add(a);
  return a != b && places.Touches(b);
}

bool IsSameFile(LongFileName const & a, LongFileName const & b) {
  file::FileInfo first;
  file::FileInfo second;
  auto & system = file::FileSystem();
  return system.Describe(a, first).Ok() && system.Describe(b, second).Ok() && first.IsSameFile(second);
}

bool MoveOver(LongFileName const & from, LongFileName const & to) {
  if (LFN_IsDirectory(to) && !LFN_Delete(to))
    return false;
  return LFN_CreateDirectoryAndParents(FolderOf(to)) && LFN_Move(from, to, kOverwriteReadOnly);
}

// Adds the folders that changed, which are not safe yet.
bool TakeBack(LongFileName const & area, LongFileName const & root, BackupEntry const & entry,
              std::set<AString> & folders) {
  LongFileName const path = root + entry.path;
  folders.insert(FolderOf(path));
  if (entry.kind == Kind::Absent)
    return !LFN_Exists(path) || LFN_Delete(path);
  LongFileName const now = entry.kind == Kind::Kept ? area + AString::Format(L"%ld", entry.number) : root + entry.to;
  file::FileInfo here;
  file::FileInfo there;
  // What can't be looked at is not gone.
  if (!file::FileSystem().Describe(now, here).Ok() || !file::FileSystem().Describe(path, there).Ok())
    return false;
  // It was not moved yet, or is back already.
  if (here.kind == file::FileKind::None || (entry.kind == Kind::Renamed && there.kind != file::FileKind::None))
    return true;
  folders.insert(FolderOf(now));
  return MoveOver(now, path);
}

/// Where the entries begin that can be taken back together, as no two of them are about one place, so that it does no
/// harm to do it again.  One that made room for a rename behind it goes with that.
std::size_t StartOfLastRun(std::vector<BackupEntry> const & entries) {
  TouchedPlaces touched;
  std::set<AString> filled;
  for (std::size_t at = entries.size(); at > 0; --at) {
    BackupEntry const & entry = entries[at - 1];
    if (entry.kind == Kind::Unknown)
      return at == entries.size() ? at - 1 : at;
    bool const madeRoom = entry.kind == Kind::Kept && filled.erase(entry.path) > 0;
    bool const isAlone = !touched.Touches(entry.path) && (entry.kind != Kind::Renamed || !touched.Touches(entry.to));
    if (!madeRoom && !isAlone)
      return at;
    touched.Add(entry.path);
    if (entry.kind == Kind::Renamed) {
      touched.Add(entry.to);
      filled.insert(entry.to);
    }
  }
  return 0;
}

bool SyncFolders(std::set<AString> const & folders) {
  return std::all_of(folders.begin(), folders.end(), [](AString const & folder) {
    return !LFN_IsDirectory(folder) || file::FileSystem().SyncFolder(folder).Ok();
  });
}

bool NamesPlace(LongFileName const & root, AString const & areaPlace, AString const & place) {
  AString relative;
  return LFN_IsPlaceInside(root, place) && LFN_RelativeTo(root, root + place, relative) &&
         (areaPlace.empty() || !DoOverlap(relative, areaPlace));
}

bool NamesPlaces(LongFileName const & root, AString const & areaPlace, BackupEntry const & entry) {
  return NamesPlace(root, areaPlace, entry.path) &&
         (entry.kind != Kind::Renamed || NamesPlace(root, areaPlace, entry.to));
}

bool CanTakeBack(LongFileName const & root, AString const & areaPlace, BackupEntry const & entry) {
  if (entry.kind == Kind::Unknown)
    return false;
  bool const isInside = NamesPlaces(root, areaPlace, entry);
  KVRO_ASSERT(isInside);
  return isInside;
}

} // namespace

bool BackupArea::Begin(LongFileName const & area, LongFileName const & root) {
  if (s_open)
    return IsSameFolder(s_open->folder, area) && IsSameFolder(s_open->root, root);
  if (IsLink(area) || IsPending(area))
    return false;
  auto opened = std::make_unique<OpenArea>();
  opened->folder = LFN_AbsolutePath(area);
  opened->root = LFN_AbsolutePath(root);
  // What a Drop that was cut short left there goes now.
  bool const isEmpty = !LFN_IsDirectory(area) || LFN_DeleteDirectoryContents(area);
  if (!isEmpty || !LFN_CreateDirectoryAndParents(area) || !SyncFolderOf(area) || !opened->journal.Create(area))
    return false;
  opened->placeInRoot = PlaceInRoot(root, area);
  s_open = std::move(opened);
  return true;
}

bool BackupArea::IsOpen() { return s_open != nullptr; }

bool BackupArea::IsPending(LongFileName const & area) { return !IsLink(area) && BackupJournal::StandsIn(area); }

bool BackupArea::ListTouched(LongFileName const & area, std::vector<AString> & paths) {
  BackupJournal journal;
  std::vector<BackupEntry> entries;
  bool isRead = journal.OpenForReading(area) && journal.ReadEntries(entries);
  for (BackupEntry const & entry : entries) {
    if (entry.kind == Kind::Unknown) {
      isRead = false;
      continue;
    }
    paths.push_back(entry.path);
    if (entry.kind == Kind::Renamed)
      paths.push_back(entry.to);
  }
  return isRead;
}

void BackupArea::BeginGroup() {
  if (s_open)
    s_open->isGroup = true;
}

bool BackupArea::EndGroup() {
  if (!s_open)
    return true;
  s_open->isGroup = false;
  return s_open->Flush() && !s_open->failed;
}

bool BackupArea::IsWhole() {
  if (!s_open || !s_open->Flush() || s_open->failed)
    return false;
  if (!SyncFolders(s_open->changedFolders))
    return s_open->Done(false);
  s_open->changedFolders.clear();
  return file::FileSystem().SyncFolder(s_open->folder).Ok();
}

void BackupArea::MarkIncomplete(AString const & place) {
  if (!s_open)
    return;
  s_open->failed = true;
  if (s_open->obstacle.empty())
    s_open->obstacle = place;
}

AString BackupArea::GetObstacle() { return s_open ? s_open->obstacle : AString(); }

bool BackupArea::Drop(LongFileName const & area) {
  if (s_open && IsSameFolder(s_open->folder, area))
    s_open->Flush();
  Close(area);
  if (!LFN_Exists(area))
    return true;
  // Without its journal nobody takes half an area back.
  if (IsPending(area) && !LFN_DeleteFile(area + BackupJournal::Name()))
    return false;
  return file::FileSystem().SyncFolder(area).Ok() && LFN_Delete(area) && SyncFolderOf(area);
}

bool BackupArea::Restore(LongFileName const & area, LongFileName const & root) {
  Close(area);
  if (IsLink(area))
    return false;
  if (IsPending(area)) {
    AString const areaPlace = PlaceInRoot(root, area);
    BackupJournal journal;
    std::vector<BackupEntry> entries;
    if (!journal.Open(area) || !journal.ReadEntries(entries))
      return false;
    while (!entries.empty()) {
      std::size_t const start = StartOfLastRun(entries);
      std::set<AString> folders;
      for (std::size_t at = entries.size(); at > start; --at) {
        BackupEntry const & entry = entries[at - 1];
        // Those in front of one that can't be taken back stay: they may stand on it.
        if (!CanTakeBack(root, areaPlace, entry) || !TakeBack(area, root, entry, folders))
          return false;
      }
      // The run goes before an entry in front of it is touched, so that a second attempt never undoes it again.
      if (!SyncFolders(folders) || !journal.CutBackTo(entries[start]))
        return false;
      entries.resize(start);
    }
  }
  return Drop(area);
}

bool BackupArea::Covers(LongFileName const & path) { return !PathInRoot(path).empty(); }

bool BackupArea::Overlaps(LongFileName const & path) {
  if (!s_open)
    return false;
  if (AString const relative = PathInRoot(path); !relative.empty())
    return TouchesArea(relative);
  AString ignored;
  return IsSameFolder(s_open->folder, path) || LFN_RelativeTo(s_open->folder, path, ignored) ||
         LFN_RelativeTo(path, s_open->folder, ignored);
}

bool BackupArea::MoveIn(LongFileName const & path) {
  AString const relative = PlaceFor(path);
  if (relative.empty())
    return false;
  s_open->FlushFor(relative);
  if (!LFN_Exists(path))
    return false;
  LongFileName const item = s_open->Item(s_open->nextNumber);
  s_open->changedFolders.insert(FolderOf(s_open->root + relative));
  return s_open->Done(s_open->Move(Kind::Kept, relative, AString(), {s_open->root + relative, item}));
}

bool BackupArea::CopyIn(LongFileName const & path) {
  AString const relative = PlaceFor(path);
  if (relative.empty() || !s_open->Flush())
    return false;
  s_open->changedFolders.insert(FolderOf(s_open->root + relative));
  if (!LFN_Exists(path))
    return s_open->Done(s_open->Note({Kind::Absent, s_open->nextNumber++, relative, AString()}));
  // A copy that fails leaves a part under its number, which nothing else may bear.
  long const number = s_open->nextNumber++;
  LongFileName const item = s_open->Item(number);
  bool const isCopied = LFN_Copy(path, item, kFailIfExists) && SyncAll(item) && SyncFolderOf(item);
  return s_open->Done(isCopied && s_open->Note({Kind::Kept, number, relative, AString()}));
}

bool BackupArea::Rename(LongFileName const & from, LongFileName const & to) {
  if (!Covers(from) || !Covers(to))
    return LFN_Move(from, to, kOverwrite);
  AString const source = PlaceFor(from);
  AString const target = PlaceFor(to);
  if (source.empty() || target.empty() || LiesInOther(source, target))
    return s_open->Done(false);
  s_open->FlushFor(source);
  // Where something goes away in this group the target is free.
  bool const isVacated = s_open->vacated.contains(target);
  if (!isVacated)
    s_open->FlushFor(target);
  if (!LFN_Exists(from) || (!isVacated && IsSameFile(from, to)))
    return LFN_Move(from, to, kOverwrite);
  if (!isVacated && LFN_Exists(to) && !MoveIn(to))
    return s_open->Done(false);
  s_open->vacated.erase(target);
  s_open->changedFolders.insert({FolderOf(s_open->root + source), FolderOf(s_open->root + target)});
  return s_open->Done(s_open->Move(Kind::Renamed, source, target, {s_open->root + source, s_open->root + target}));
}
