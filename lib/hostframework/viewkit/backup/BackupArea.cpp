#include "viewkit/backup/BackupArea.h"

#include "basekit/diag/Assert.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/PlaceInFolder.h"
#include "viewkit/backup/BackupJournal.h"

#include <set>

namespace {

using Kind = BackupEntry::Kind;

struct OpenArea {
  LongFileName folder;
  LongFileName root;
  BackupJournal journal;
  long nextNumber = 1;
  bool failed = false;
  std::set<AString> changedFolders;

  LongFileName Item(long number) const { return folder + AString::Format(L"%ld", number); }
  bool Note(Kind kind, AString const & path, AString const & to = AString()) {
    return journal.Append({kind, nextNumber++, path, to});
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

AString PathInRoot(LongFileName const & path) {
  AString relative;
  if (!s_open || !LFN_RelativeTo(s_open->root, path, relative))
    return AString();
  while (!relative.empty() && relative[relative.size() - 1] == L'/')
    relative = relative.substr(0, relative.size() - 1);
  return relative;
}

/// The path in the open area's root; empty, and reported, when a link would lead elsewhere.
AString PlaceFor(LongFileName const & path) {
  AString const relative = PathInRoot(path);
  bool const isInside = relative.empty() || LFN_IsPlaceInside(s_open->root, relative);
  KVRO_ASSERT(isInside);
  return isInside ? relative : AString();
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

bool TakeBack(LongFileName const & area, LongFileName const & root, BackupEntry const & entry) {
  LongFileName const path = root + entry.path;
  if (entry.kind == Kind::Absent)
    return (!LFN_Exists(path) || LFN_Delete(path)) && SyncFolderOf(path);
  LongFileName const now = entry.kind == Kind::Kept ? area + AString::Format(L"%ld", entry.number) : root + entry.to;
  // It was not moved yet, or is back already.
  if (!LFN_Exists(now) || (entry.kind == Kind::Renamed && LFN_Exists(path)))
    return true;
  return MoveOver(now, path) && SyncFolderOf(path) && SyncFolderOf(now);
}

bool NamesPlaces(LongFileName const & root, BackupEntry const & entry) {
  return LFN_IsPlaceInside(root, entry.path) && (entry.kind != Kind::Renamed || LFN_IsPlaceInside(root, entry.to));
}

} // namespace

bool BackupArea::Begin(LongFileName const & area, LongFileName const & root) {
  if (s_open)
    return IsSameFolder(s_open->folder, area);
  if (IsPending(area))
    return false;
  auto opened = std::make_unique<OpenArea>();
  opened->folder = LFN_AbsolutePath(area);
  opened->root = LFN_AbsolutePath(root);
  // What a Drop that was cut short left there goes now.
  bool const isEmpty = !LFN_IsDirectory(area) || LFN_DeleteDirectoryContents(area);
  if (!isEmpty || !LFN_CreateDirectoryAndParents(area) || !SyncFolderOf(area) || !opened->journal.Create(area))
    return false;
  s_open = std::move(opened);
  return true;
}

bool BackupArea::IsOpen() { return s_open != nullptr; }

bool BackupArea::IsPending(LongFileName const & area) { return BackupJournal::StandsIn(area); }

bool BackupArea::ListTouched(LongFileName const & area, std::vector<AString> & paths) {
  BackupJournal journal;
  std::vector<BackupEntry> entries;
  bool const isRead = journal.OpenForReading(area) && journal.ReadEntries(entries);
  for (BackupEntry const & entry : entries) {
    paths.push_back(entry.path);
    if (entry.kind == Kind::Renamed)
      paths.push_back(entry.to);
  }
  return isRead;
}

bool BackupArea::IsWhole() {
  if (!s_open || s_open->failed)
    return false;
  for (auto const & folder : s_open->changedFolders)
    if (LFN_IsDirectory(folder) && !file::FileSystem().SyncFolder(folder).Ok())
      return s_open->Done(false);
  s_open->changedFolders.clear();
  return file::FileSystem().SyncFolder(s_open->folder).Ok();
}

bool BackupArea::Drop(LongFileName const & area) {
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
  if (IsPending(area)) {
    BackupJournal journal;
    std::vector<BackupEntry> entries;
    if (!journal.Open(area) || !journal.ReadEntries(entries))
      return false;
    for (; !entries.empty(); entries.pop_back()) {
      bool const isInside = NamesPlaces(root, entries.back());
      KVRO_ASSERT(isInside);
      // The entry goes before the one in front of it is touched, so that a second run never undoes it again.
      if ((isInside && !TakeBack(area, root, entries.back())) || !journal.CutBackTo(entries.back()))
        return false;
    }
  }
  return Drop(area);
}

bool BackupArea::Covers(LongFileName const & path) { return !PathInRoot(path).empty(); }

bool BackupArea::MoveIn(LongFileName const & path) {
  AString const relative = PlaceFor(path);
  if (relative.empty() || !LFN_Exists(path))
    return false;
  LongFileName const item = s_open->Item(s_open->nextNumber);
  s_open->changedFolders.insert(FolderOf(s_open->root + relative));
  return s_open->Done(s_open->Note(Kind::Kept, relative) && LFN_Move(s_open->root + relative, item, kFailIfExists));
}

bool BackupArea::CopyIn(LongFileName const & path) {
  AString const relative = PlaceFor(path);
  if (relative.empty())
    return false;
  if (!LFN_Exists(path))
    return s_open->Done(s_open->Note(Kind::Absent, relative));
  LongFileName const item = s_open->Item(s_open->nextNumber);
  bool const isCopied = LFN_Copy(path, item, kFailIfExists) && SyncAll(item) && SyncFolderOf(item);
  return s_open->Done(isCopied && s_open->Note(Kind::Kept, relative));
}

bool BackupArea::Rename(LongFileName const & from, LongFileName const & to) {
  if (!Covers(from) || !Covers(to) || !LFN_Exists(from) || IsSameFile(from, to))
    return LFN_Move(from, to, kOverwrite);
  AString const source = PlaceFor(from);
  AString const target = PlaceFor(to);
  if (source.empty() || target.empty() || (LFN_Exists(to) && !MoveIn(to)))
    return s_open->Done(false);
  s_open->changedFolders.insert({FolderOf(s_open->root + source), FolderOf(s_open->root + target)});
  return s_open->Done(s_open->Note(Kind::Renamed, source, target) &&
                      LFN_Move(s_open->root + source, s_open->root + target, kFailIfExists));
}
