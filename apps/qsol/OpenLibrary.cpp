// Which of the two files a verb looks at, and why not when it can't.

#include "apps/qsol/OpenLibrary.h"

#include "apps/qsol/Failure.h"
#include "apps/qsol/Text.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/LongFileName.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace qsol {

using library::LibraryReader;
using PrivateFile = LibraryReader::PrivateFile;
using Result = CStreamioLibrary::LibIOReturn;

namespace {

constexpr auto kGood = CStreamioLibrary::kLibSuccess;
/// A writer may commit between the reading of the two files; then both are read again, so many times.
constexpr int kMostRereads = 5;

file::FileInfo Describe(AString const & path) {
  file::FileInfo info;
  if (auto const status = file::FileSystem().Describe(LongFileName(path), info); !status.Ok())
    throw Failure(Exit::Unreadable, OneLine(status.Text()) + "; check the path and its permissions");
  return info;
}

bool IsFile(AString const & path, std::uint64_t * length = nullptr) {
  file::FileInfo info;
  bool const isFile = file::FileSystem().Describe(LongFileName(path), info).Ok() && info.kind == file::FileKind::File;
  if (length)
    *length = info.length;
  return isFile;
}

// Opening a pipe would wait for its writer, so what is no file is told before.
void RefuseWhatIsNoFile(AString const & path, file::FileInfo const & info) {
  if (info.kind == file::FileKind::Folder)
    throw Failure(Exit::Unreadable, OneLine(path) + ": is a folder; name the .qsol file in it");
  if (info.kind == file::FileKind::Other)
    throw Failure(Exit::Unreadable, OneLine(path) + ": is no regular file; copy it into one");
  if (info.kind == file::FileKind::None && info.isLink)
    throw Failure(Exit::Unreadable, OneLine(path) + ": is a link that leads nowhere; restore what it leads to");
}

Failure WhyNot(AString const & path, Result result, AString const & error) {
  std::string const name = OneLine(path);
  std::uint64_t length = 0;
  switch (result) {
  case CStreamioLibrary::kLibForeignFile:
    return {Exit::NoLibrary, name + ": is no block library; name a .qsol file"};
  case CStreamioLibrary::kLibNewerVersion:
    return {Exit::LaterFormat, name + ": was written in a later format; use a later qsol"};
  case CStreamioLibrary::kLibNotFound:
    if (IsFile(path, &length))
      return {Exit::NoLibrary, name + (length == 0 ? ": is empty" : ": holds no whole header") +
                                   ": cut off, or nothing was stored yet; name another file"};
    return {Exit::Unreadable, name + ": there is no such file; check the path"};
  default:
    return {Exit::Unreadable, OneLine(error) + "; check the file and its permissions"};
  }
}

[[noreturn]] void Refuse(OpenedLibrary const & opened, Result result) {
  Failure const why = WhyNot(opened.publicPath, result, opened.reader.LastError());
  if (!IsFile(opened.privatePath))
    throw why;
  throw Failure(why.Code(), fmt::format("{}; its private file can be looked at by itself: {}", why.what(),
                                        OneLine(opened.privatePath)));
}

void ReadBoth(OpenedLibrary & opened, bool withPrivate) {
  LongFileName const path(opened.publicPath);
  Result result = opened.reader.Open(path, withPrivate);
  bool changed = withPrivate;
  for (int count = 0; changed && count < kMostRereads; ++count)
    result = opened.reader.Refresh(changed);
  if (result == CStreamioLibrary::kLibNotFound && withPrivate)
    result = opened.reader.OpenAlone(LongFileName(opened.privatePath));
  if (result != kGood)
    Refuse(opened, result);
}

void NoteWhatIsNotShown(ViewOptions const & options, OpenedLibrary & opened) {
  std::string const name = OneLine(opened.privatePath);
  if (opened.ShowsPrivate() && !opened.ShowsPublic())
    opened.notices.push_back(
        fmt::format("{}: holds no committed state, {} alone is shown", OneLine(opened.publicPath), name));
  if (opened.ShowsPrivate() || options.committedOnly)
    return;
  switch (opened.privateState) {
  case PrivateFile::None:
    return;
  case PrivateFile::Unreadable: {
    std::string const why = WhyUnreadable(opened.privatePath);
    opened.notices.push_back("not shown: " + (why.empty() ? name : why));
    return;
  }
  case PrivateFile::OtherGeneration:
    opened.notices.push_back(name + ": belongs to another state of the public file and is not shown; name it itself");
    return;
  default:
    opened.notices.push_back(options.withPrivate
                                 ? name + ": changed while it was read and is not shown; try again"
                                 : fmt::format("{}: stands beside the committed state ({}); --private shows it too",
                                               name, NameOf(opened.privateState)));
  }
}

} // namespace

char const * OpenedLibrary::Shown() const {
  return !ShowsPrivate() ? "committed" : ShowsPublic() ? "committed and private" : "private";
}

char const * NameOf(PrivateFile state) {
  switch (state) {
  case PrivateFile::None:
    return "none";
  case PrivateFile::InUse:
    return "in use";
  case PrivateFile::ClosedInOrder:
    return "closed in order";
  case PrivateFile::LeftByCrash:
    return "left by a crash";
  case PrivateFile::OtherGeneration:
    return "of another generation";
  case PrivateFile::Unreadable:
    return "unreadable";
  }
  return "unreadable";
}

std::string WhyUnreadable(AString const & path) {
  try {
    file::FileInfo const info = Describe(path);
    if (info.kind == file::FileKind::None && !info.isLink)
      return {};
    RefuseWhatIsNoFile(path, info);
    LibraryReader reader;
    Result const result = reader.OpenAlone(LongFileName(path));
    return result == kGood ? std::string() : WhyNot(path, result, reader.LastError()).what();
  } catch (Failure const & failure) {
    return failure.what();
  }
}

void OpenLibrary(ViewOptions const & options, OpenedLibrary & opened) {
  opened.publicPath = Word(options.file);
  if (opened.publicPath.empty())
    throw Failure(Exit::Usage, "'': is no path; name a .qsol file");
  opened.privatePath = opened.publicPath + L"_priv";
  RefuseWhatIsNoFile(opened.publicPath, Describe(opened.publicPath));
  bool const isAlone = opened.reader.OpenAlone(LongFileName(opened.publicPath)) == kGood && opened.ShowsPrivate();
  if (isAlone && options.committedOnly)
    throw Failure(Exit::Usage, OneLine(opened.publicPath) +
                                   ": is a private file, which has no committed state; leave --committed-only out");
  if (isAlone) {
    opened.privatePath = opened.publicPath;
    return;
  }
  bool const hasTwin = IsFile(opened.privatePath);
  bool const hasPublic = opened.ShowsPublic();
  ReadBoth(opened, hasTwin && !options.committedOnly && (options.withPrivate || !hasPublic));
  if (hasTwin)
    opened.privateState = LibraryReader::StateOfPrivateFile(LongFileName(opened.publicPath));
  else if (!WhyUnreadable(opened.privatePath).empty())
    opened.privateState = PrivateFile::Unreadable;
  NoteWhatIsNotShown(options, opened);
}

void AddViewOptions(CLI::App & verb, ViewOptions & options) {
  verb.add_option("FILE", options.file, "the library: a .qsol file, or a private file by itself")->required();
  AddViewFlags(verb, options);
}

void AddViewFlags(CLI::App & verb, ViewOptions & options) {
  auto * const both = verb.add_flag("--private", options.withPrivate,
                                    "show what the private file holds too, live, as far as it is whole");
  verb.add_flag("--committed-only", options.committedOnly, "look at the public file alone")->excludes(both);
}

} // namespace qsol
