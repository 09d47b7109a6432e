#include "desktop/project/Attachments.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/PlaceInFolder.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CToken_istream.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "solutionmanager/locations/CManagedFilesMgr.h"
#include "solutionmanager/locations/ManagedFileLists.h"

#include <algorithm>
#include <map>

namespace desktop {

namespace {

AString const kFolder(L"attachments/");
constexpr std::size_t kLongestPart = 200; // Bytes; file systems hold 255, and the copy's own name needs some.
constexpr std::size_t kLongestName = 1000;

[[noreturn]] void Refuse(AString const & name, AString const & what) {
  throw Error(ErrorKind::kUsage, AString(L"attachment '") + name + L"': " + what);
}

void CheckName(AString const & name) {
  bool const hasControls =
      std::any_of(name.begin(), name.end(), [](wchar_t c) { return c < L' ' || c == 0x7f || c == L'\\'; });
  if (name.Trimmed().empty() || name.EndsWith(L"/") || hasControls || name.find(L"//") != AString::npos)
    Refuse(name, L"is no name of a file; write NAME or FOLDER/NAME with --to");
  auto const parts = name.Tokenize(L"/");
  bool const leadsElsewhere =
      !LFN_IsTextOfPlaceInside(name) ||
      std::any_of(parts.begin(), parts.end(), [](AString const & part) { return part == L"."; });
  if (leadsElsewhere)
    Refuse(name, L"leads out of the project; write NAME or FOLDER/NAME with --to");
  bool const isTooLong = text::ToUtf8(name).size() > kLongestName ||
                         std::any_of(parts.begin(), parts.end(),
                                     [](AString const & part) { return text::ToUtf8(part).size() > kLongestPart; });
  if (isTooLong)
    Refuse(name.substr(0, 40) + L"...",
           AString::Format(L"is too long; give one of at most %lu bytes with --to", kLongestPart));
}

// Both lists as they stand: base directories with names.
struct Lists {
  managed::Names committed;
  managed::Names created;
  managed::Names deleted;
};

void Add(io::CBlock const & block, managed::Names & names) {
  for (auto const & [folder, files] : managed::FoldersOf(block))
    names[folder].insert(files.begin(), files.end());
}

void ReadCommitted(LongFileName const & list, Lists & lists) {
  if (!LFN_Exists(list))
    return;
  io::CToken_istream in(list, managed::kReadFlags);
  managed::ReadByteOrder(in);
  io::CBlock files(managed::kManagedFiles);
  if (in.AtBeginBlock(managed::kManagedFiles))
    in >> files;
  Add(files, lists.committed);
}

void ReadPrivate(LongFileName const & list, Lists & lists) {
  if (!LFN_Exists(list))
    return;
  io::CToken_istream in(list, managed::kReadFlags);
  io::CBlock created(managed::kManagedFiles);
  io::CBlock deleted(managed::kDeletedFiles);
  if (in.AtBeginBlock(managed::kManagedFiles))
    in >> created >> deleted;
  Add(created, lists.created);
  Add(deleted, lists.deleted);
}

// A save that removes a file looks for it.
void PutEmptyFile(LongFileName const & path) {
  std::unique_ptr<file::IFile> opened;
  LFN_CreateDirectoryAndParents(LongFileName(path.DirPath()));
  static_cast<void>(file::FileSystem().Open(path, file::OpenMode::Create, opened));
}

CManagedFilesMgr & FilesOf(Session & session) {
  auto * const files = dynamic_cast<CManagedFilesMgr *>(session.GetManager().GetIManagedFileService());
  if (!files)
    throw Error(ErrorKind::kFailed, L"the product of the project keeps no files for users");
  return *files;
}

Lists ListsOf(Session & session) {
  Lists lists;
  auto const [committed, uncommitted] = FilesOf(session).GetListFiles();
  ReadCommitted(committed, lists);
  if (!session.IsReadOnly())
    ReadPrivate(uncommitted, lists);
  return lists;
}

bool Contains(managed::Names const & names, AString const & folder, AString const & file) {
  auto const found = names.find(folder);
  return found != names.end() && found->second.contains(file);
}

} // namespace

std::vector<Attachment> Attachments::List() const {
  Lists const lists = ListsOf(m_session);
  managed::Names all = lists.committed;
  for (auto const & [folder, files] : lists.created)
    all[folder].insert(files.begin(), files.end());
  std::vector<Attachment> attachments;
  for (auto const & [folder, files] : all)
    for (AString const & file : files) {
      Attachment attachment;
      attachment.isSaved = Contains(lists.committed, folder, file);
      attachment.isDetached = Contains(lists.deleted, folder, file);
      // What was attached and detached since the last save is nothing to tell.
      if (!folder.StartsWith(kFolder) || (attachment.isDetached && !attachment.isSaved))
        continue;
      attachment.name = folder.substr(kFolder.size());
      attachment.path = m_session.GetManager().GetFullPathForManagedFile(folder, file);
      file::FileInfo info;
      attachment.isMissing = attachment.path.IsEmpty() || !file::FileSystem().Describe(attachment.path, info).Ok() ||
                             info.kind != file::FileKind::File;
      attachment.size = attachment.isMissing ? 0 : info.length;
      attachments.push_back(std::move(attachment));
    }
  return attachments;
}

Attachment Attachments::Attach(LongFileName const & file, AString const & name) {
  m_session.RefuseWhenReadOnly();
  CheckName(name);
  file::FileInfo info;
  auto const described = file::FileSystem().Describe(file, info);
  if (!described.Ok() || info.kind == file::FileKind::None)
    throw Error(ErrorKind::kUsage, file.FilePath() + L": there is no such file; give the path of one");
  if (info.kind != file::FileKind::File)
    throw Error(ErrorKind::kUsage, file.FilePath() + L": is no file; pack a folder into an archive, and attach that");
  for (Attachment const & present : List())
    if (present.name == name && !present.isDetached)
      Refuse(name, L"there is one of that name already; detach it first, or give another name with --to");
  AString made;
  AString const folder = kFolder + name;
  bool const isMade = m_session.GetManager().CreateManagedFile(made, folder, LongFileName(name).Extension());
  Attachment attachment;
  attachment.name = name;
  attachment.path = isMade ? m_session.GetManager().GetFullPathForManagedFile(folder, made) : LongFileName();
  if (!isMade || !LFN_Copy(file, attachment.path, kOverwrite)) {
    AString const why = LFN_LastError();
    if (isMade)
      m_session.GetManager().DeleteManagedFile(folder, made);
    throw Error(ErrorKind::kStorage, AString(L"attachment '") + name + L"': can't be stored (" + why +
                                         L"); make room or get permission, and try again");
  }
  attachment.size = info.length;
  return attachment;
}

void Attachments::Detach(AString const & name) {
  m_session.RefuseWhenReadOnly();
  for (Attachment const & present : List())
    if (present.name == name && !present.isDetached) {
      if (present.isMissing && !present.path.IsEmpty())
        PutEmptyFile(present.path);
      if (!m_session.GetManager().DeleteManagedFile(kFolder + name, present.path.NameAndExtension()))
        throw Error(ErrorKind::kStorage, AString(L"attachment '") + name + L"': can't be detached (" + LFN_LastError() +
                                             L"); make room or get permission, and try again");
      return;
    }
  Refuse(name, L"there is none of that name; `solvedesk attachments` lists them");
}

} // namespace desktop
