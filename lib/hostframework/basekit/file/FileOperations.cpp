#include "basekit/file/FileOperations.h"

#include "basekit/file/IFileSystem.h"
#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"

#include <cerrno>
#include <filesystem>

using file::FileInfo;
using file::FileKind;
using file::FileStatus;

namespace {

AString s_lastError;

bool Told(FileStatus const & status) {
  if (!status.Ok())
    s_lastError = status.Text();
  return status.Ok();
}

bool Refuse(wchar_t const * what, LongFileName const & path) {
  s_lastError = AString(what) + path.FilePath();
  return false;
}

bool Describe(LongFileName const & path, FileInfo & info) { return Told(file::FileSystem().Describe(path, info)); }

bool IsLink(LongFileName const & path) {
  FileInfo info;
  return Describe(path, info) && info.isLink;
}

// A link is removed, never what it points to.
bool IsRealFolder(LongFileName const & path) {
  FileInfo info;
  return Describe(path, info) && info.kind == FileKind::Folder && !info.isLink;
}

LongFileName WithoutSlash(LongFileName const & path) {
  AString text = path.FilePath();
  while (text.size() > 1 && text[text.size() - 1] == L'/')
    text = text.substr(0, text.size() - 1);
  return text;
}

bool MayReplace(LongFileName const & to, BehaviorIfSourceExists behavior) {
  FileInfo info;
  if (!Describe(to, info))
    return false;
  if (info.kind == FileKind::None)
    return true;
  if (info.kind == FileKind::Folder)
    return Refuse(L"a folder stands at ", to);
  if (behavior == kFailIfExists)
    return Refuse(L"there is a file already: ", to);
  bool const isProtected = (info.mode & 0200) == 0;
  return behavior == kOverwriteReadOnly || !isProtected || Refuse(L"the file is write-protected: ", to);
}

bool CopyBytes(file::IFile & from, file::IFile & to) {
  std::vector<char> buffer(std::size_t{256} * 1024);
  for (std::uint64_t offset = 0;;) {
    std::size_t got = 0;
    if (!Told(from.Read(offset, buffer, got)))
      return false;
    if (got == 0)
      return true;
    std::string_view const piece(buffer.data(), got);
    if (!Told(to.Write(offset, std::span(&piece, 1))))
      return false;
    offset += got;
  }
}

// The copy grows under another name beside the target, so that a failure leaves the target as it was.
bool CopyFile(LongFileName const & from, LongFileName const & to, BehaviorIfSourceExists behavior) {
  FileInfo source;
  FileInfo target;
  if (!Describe(from, source) || !Describe(to, target))
    return false;
  if (source.kind != FileKind::File)
    return Refuse(L"there is no file ", from);
  if (source.IsSameFile(target))
    return true;
  if (!MayReplace(to, behavior))
    return false;
  AString temporary;
  if (!KvroGetTempFileName(to.DirPath(), to.NameAndExtension() + L".", L"copy", temporary))
    return Refuse(L"cannot make a file beside ", to);
  auto & system = file::FileSystem();
  bool copied = false;
  {
    std::unique_ptr<file::IFile> in;
    std::unique_ptr<file::IFile> out;
    copied = Told(system.Open(from, file::OpenMode::Read, in)) &&
             Told(system.Open(temporary, file::OpenMode::CreateNew, out)) && CopyBytes(*in, *out);
  }
  copied = copied && Told(system.SetMode(temporary, source.mode)) && Told(system.Rename(temporary, to));
  if (!copied)
    static_cast<void>(system.RemoveFile(temporary)); // The failure is told already.
  return copied;
}

// What the way to either leads over counts.
bool LiesIn(LongFileName folder, LongFileName path) {
  folder = LFN_ResolvedPath(WithoutSlash(folder));
  path = LFN_ResolvedPath(WithoutSlash(path));
  folder.MakeItDirectory();
  path.MakeItDirectory();
  return path != folder && path.FilePath().StartsWith(folder.FilePath());
}

bool CopyContents(LongFileName const & from, LongFileName const & to, bool overwrite) {
  std::vector<AString> names;
  if (!Told(file::FileSystem().List(from, names)) || !LFN_CreateDirectory(to))
    return false;
  bool all = true;
  for (auto const & name : names) {
    LongFileName const source = from + name;
    LongFileName const target = to + name;
    // What a link leads to is no part of the folder, and a link to a folder above it would be copied without end.
    if (IsLink(source) || (IsLink(target) && LFN_IsDirectory(source)))
      all = Refuse(L"a link is not followed: ", source);
    else if (LFN_IsDirectory(source))
      all = CopyContents(source, target, overwrite) && all;
    else if (overwrite || !LFN_Exists(target))
      all = CopyFile(source, target, kOverwrite) && all;
  }
  return all;
}

} // namespace

bool LFN_Exists(LongFileName const & path) {
  FileInfo info;
  return Describe(path, info) && info.kind != FileKind::None;
}

bool LFN_IsDirectory(LongFileName const & path) {
  FileInfo info;
  return Describe(path, info) && info.kind == FileKind::Folder;
}

bool LFN_Copy(LongFileName const & from, LongFileName const & to, BehaviorIfSourceExists behavior) {
  if (LFN_IsDirectory(from))
    return LFN_CopyDirectoryContents(from, to, behavior != kFailIfExists);
  return CopyFile(from, to, behavior);
}

bool LFN_Move(LongFileName const & from, LongFileName const & to, BehaviorIfSourceExists behavior) {
  LongFileName const source = WithoutSlash(from);
  LongFileName const target = WithoutSlash(to);
  FileInfo sourceInfo;
  FileInfo targetInfo;
  if (!Describe(source, sourceInfo) || !Describe(target, targetInfo))
    return false;
  if (sourceInfo.kind == FileKind::None)
    return Refuse(L"there is no file ", from);
  if (sourceInfo.IsSameFile(targetInfo))
    return true;
  bool const replacesFolder =
      sourceInfo.kind == FileKind::Folder && targetInfo.kind == FileKind::Folder && behavior != kFailIfExists;
  if (replacesFolder) {
    if (!LFN_Delete(target))
      return false;
  } else if (!MayReplace(target, behavior)) {
    return false;
  }
  FileStatus const renamed = file::FileSystem().Rename(source, target);
  if (renamed.Error() != EXDEV)
    return Told(renamed);
  return LFN_Copy(source, target, behavior) && LFN_Delete(source);
}

bool LFN_Rename(LongFileName const & from, LongFileName const & to) {
  return !LFN_Exists(to) ? Told(file::FileSystem().Rename(WithoutSlash(from), WithoutSlash(to)))
                         : Refuse(L"there is a file already: ", to);
}

bool LFN_DeleteFile(LongFileName const & path) { return Told(file::FileSystem().RemoveFile(path)); }

bool LFN_Delete(LongFileName const & path) {
  LongFileName const name = WithoutSlash(path);
  if (!IsRealFolder(name))
    return LFN_DeleteFile(name);
  return LFN_DeleteDirectoryContents(name) && Told(file::FileSystem().RemoveFolder(name));
}

bool LFN_DeleteDirectoryContents(LongFileName const & path) {
  if (IsLink(WithoutSlash(path)))
    return Refuse(L"what a link leads to is not emptied: ", path);
  std::vector<AString> names;
  if (!Told(file::FileSystem().List(path, names)))
    return false;
  bool all = true;
  for (auto const & name : names)
    all = LFN_Delete(path + name) && all;
  return all;
}

bool LFN_CreateDirectory(LongFileName const & path) {
  FileStatus const made = file::FileSystem().MakeFolder(path);
  return (made.Error() == EEXIST && LFN_IsDirectory(path)) || Told(made);
}

bool LFN_CreateDirectoryAndParents(LongFileName const & path) {
  if (path.IsEmpty() || LFN_IsDirectory(path))
    return true;
  LongFileName const name = WithoutSlash(path);
  LongFileName const parent = name.DirPath();
  bool const isRoot = parent == name; // Seen here when the disk tells nothing of it.
  return (isRoot || LFN_CreateDirectoryAndParents(parent)) && LFN_CreateDirectory(path);
}

bool LFN_CopyDirectoryContents(LongFileName const & from, LongFileName const & to, bool overwrite) {
  if (LiesIn(from, to))
    return Refuse(L"a folder is not copied into itself: ", to); // It would meet its own copy again and again.
  return CopyContents(from, to, overwrite);
}

AString const & LFN_LastError() { return s_lastError; }

LongFileName LFN_ResolvedPath(LongFileName const & path) {
  std::error_code failed;
  std::filesystem::path const absolute(text::ToUtf8(LFN_AbsolutePath(path).FilePath()));
  std::filesystem::path const resolved = std::filesystem::weakly_canonical(absolute, failed);
  return text::FromUtf8((failed ? absolute : resolved).string());
}

LongFileName LFN_AbsolutePath(LongFileName const & path) {
  std::error_code ignored; // Without a current folder the path stays relative.
  std::filesystem::path const given(text::ToUtf8(path.FilePath()));
  std::filesystem::path const absolute = std::filesystem::absolute(given, ignored);
  return text::FromUtf8((absolute.empty() ? given : absolute).lexically_normal().string());
}

bool KvroGetTempFileName(LongFileName const & directory, AString const & prefix, AString const & extension,
                         AString & fileName) {
  if (!directory.IsEmpty() && !LFN_IsDirectory(directory))
    return false;
  AString const ending = extension.empty() || extension[0] == L'.' ? extension : AString(L".") + extension;
  for (unsigned long number = 1; number != 0; ++number) {
    LongFileName const candidate = directory + (prefix + AString::Format(L"%lu", number) + ending);
    FileInfo info;
    if (!Describe(candidate, info))
      return false;
    if (info.kind == FileKind::None && !info.isLink) {
      fileName = candidate.FilePath();
      return true;
    }
  }
  return false;
}
