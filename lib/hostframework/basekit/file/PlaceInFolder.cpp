#include "basekit/file/PlaceInFolder.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/LongFileName.h"

namespace {

bool IsLink(LongFileName const & path) {
  file::FileInfo info;
  // What can't be looked at can't be followed either.
  return file::FileSystem().Describe(path, info).Ok() && info.isLink;
}

bool IsBehind(LongFileName base, LongFileName const & path, AString & relative) {
  base.MakeItDirectory();
  AString const whole = path.FilePath();
  if (!whole.StartsWith(base.FilePath()) || whole.size() == base.FilePath().size())
    return false;
  relative = whole.substr(base.FilePath().size());
  return true;
}

LongFileName ParentOf(LongFileName const & path) {
  AString text = path.FilePath();
  while (text.EndsWith(L"/"))
    text = text.substr(0, text.size() - 1);
  return LongFileName(text).DirPath();
}

} // namespace

bool LFN_IsTextOfPlaceInside(AString const & relative) {
  if (relative.empty() || relative[0] == L'/' || relative.find(L'\0') != AString::npos)
    return false;
  bool namesSomething = false;
  for (AString const & part : relative.Tokenize(L"/")) {
    if (part == L"..")
      return false;
    namesSomething = namesSomething || part != L".";
  }
  return namesSomething;
}

bool LFN_IsPlaceInside(LongFileName const & folder, AString const & relative) {
  if (!LFN_IsTextOfPlaceInside(relative))
    return false;
  for (std::size_t slash = relative.find(L'/'); slash != AString::npos; slash = relative.find(L'/', slash + 1))
    if (IsLink(folder + relative.substr(0, slash)))
      return false;
  return relative[relative.size() - 1] == L'/' || !IsLink(folder + relative);
}

bool LFN_RelativeTo(LongFileName const & folder, LongFileName const & path, AString & relative) {
  LongFileName const whole = LFN_AbsolutePath(path);
  if (IsBehind(LFN_AbsolutePath(folder), whole, relative))
    return true;
  AString const name = whole.NameAndExtension();
  return !name.empty() && IsBehind(LFN_ResolvedPath(folder), LFN_ResolvedPath(ParentOf(whole)) + name, relative);
}
