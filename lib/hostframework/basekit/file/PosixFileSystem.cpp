// The one place that calls the operating system.
#include "basekit/file/IFileSystem.h"
#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <system_error>
#include <unistd.h>

namespace file {

namespace {

constexpr std::size_t kMostPieces = 64;

std::string Bytes(LongFileName const & path) { return text::ToUtf8(path.FilePath()); }

FileStatus Failure(wchar_t const * what, AString const & path, int error) {
  AString const reason = text::FromUtf8(std::generic_category().message(error));
  return FileStatus(error, AString(L"cannot ") + what + L" " + path + L": " + reason);
}

void Fill(FileInfo & info, struct stat const & status) {
  info.kind = S_ISREG(status.st_mode) ? FileKind::File : S_ISDIR(status.st_mode) ? FileKind::Folder : FileKind::Other;
  info.length = static_cast<std::uint64_t>(status.st_size);
  info.device = static_cast<std::uint64_t>(status.st_dev);
  info.node = static_cast<std::uint64_t>(status.st_ino);
  info.mode = status.st_mode & 07777;
}

class PosixFile : public IFile {
public:
  PosixFile(int descriptor, AString const & path) : m_descriptor(descriptor), m_path(path) {}
  ~PosixFile() override {
    ::close(m_descriptor);
    if (m_folder >= 0)
      ::close(m_folder);
  }

  FileStatus Read(std::uint64_t offset, std::span<char> into, std::size_t & got) override {
    got = 0;
    while (got < into.size()) {
      ssize_t const step =
          ::pread(m_descriptor, into.data() + got, into.size() - got, static_cast<off_t>(offset + got));
      if (step == 0)
        break;
      if (step > 0)
        got += static_cast<std::size_t>(step);
      else if (errno != EINTR)
        return Failure(L"read", m_path, errno);
    }
    return {};
  }

  FileStatus Write(std::uint64_t offset, std::span<std::string_view const> pieces) override {
    std::array<iovec, kMostPieces> left;
    for (std::size_t piece = 0; piece < pieces.size();) {
      std::size_t count = 0;
      for (; piece < pieces.size() && count < left.size(); ++piece)
        if (!pieces[piece].empty())
          left[count++] = {const_cast<char *>(pieces[piece].data()), pieces[piece].size()};
      for (std::size_t first = 0; first < count;) {
        ssize_t const step =
            ::pwritev(m_descriptor, &left[first], static_cast<int>(count - first), static_cast<off_t>(offset));
        if (step < 0 && errno == EINTR)
          continue;
        if (step <= 0)
          return Failure(L"write", m_path, step == 0 ? EIO : errno);
        offset += static_cast<std::uint64_t>(step);
        Advance(std::span(left.data(), count), first, static_cast<std::size_t>(step));
      }
    }
    return {};
  }

  FileStatus Truncate(std::uint64_t length) override {
    return Told(::ftruncate(m_descriptor, static_cast<off_t>(length)), L"shorten");
  }

  // Not retried when it fails: what the failed call left in memory may never reach the disk.
  FileStatus Sync() override { return Told(::fsync(m_descriptor), L"sync"); }

  FileStatus Describe(FileInfo & info) override {
    struct stat status {};
    if (::fstat(m_descriptor, &status) != 0)
      return Failure(L"describe", m_path, errno);
    info = FileInfo();
    Fill(info, status);
    return {};
  }

  FileStatus StandsUnder(LongFileName const & path, Standing & standing) override {
    if (path != m_askedPath || m_folder < 0)
      RememberFolder(path);
    struct stat named {};
    bool const isThere = ::fstatat(m_folder < 0 ? AT_FDCWD : m_folder, m_askedName.c_str(), &named, 0) == 0;
    if (!isThere && errno != ENOENT && errno != ENOTDIR)
      return Failure(L"describe", path.FilePath(), errno);
    standing = !isThere                                             ? Standing::Vanished
               : named.st_dev == m_device && named.st_ino == m_node ? Standing::Same
                                                                    : Standing::Replaced;
    return {};
  }

  FileStatus TryLock() override { return Told(Lock(F_WRLCK), L"lock"); }
  FileStatus Unlock() override { return Told(Lock(F_UNLCK), L"unlock"); }

  FileStatus AskLock(bool & isLocked) override {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    FileStatus const status = Told(::fcntl(m_descriptor, F_OFD_GETLK, &lock), L"ask for the lock of");
    isLocked = status.Ok() && lock.l_type != F_UNLCK;
    return status;
  }

private:
  static void Advance(std::span<iovec> pieces, std::size_t & first, std::size_t written) {
    while (first < pieces.size() && written >= pieces[first].iov_len)
      written -= pieces[first++].iov_len;
    if (written > 0) {
      pieces[first].iov_base = static_cast<char *>(pieces[first].iov_base) + written;
      pieces[first].iov_len -= written;
    }
  }

  // One component is looked up at a time from then on; without the folder it is the whole path.
  void RememberFolder(LongFileName const & path) {
    struct stat mine {};
    if (::fstat(m_descriptor, &mine) == 0) {
      m_device = mine.st_dev;
      m_node = mine.st_ino;
    }
    if (m_folder >= 0)
      ::close(m_folder);
    std::string const folder = Bytes(LongFileName(path.DirPath()));
    m_folder = ::open(folder.empty() ? "." : folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    m_askedName = Bytes(m_folder < 0 ? path : LongFileName(path.NameAndExtension()));
    m_askedPath = path;
  }

  int Lock(short kind) const {
    struct flock lock {};
    lock.l_type = kind;
    lock.l_whence = SEEK_SET;
    int const result = ::fcntl(m_descriptor, F_OFD_SETLK, &lock);
    if (result != 0 && errno == EACCES)
      errno = EAGAIN;
    return result;
  }

  FileStatus Told(int result, wchar_t const * what) const {
    return result == 0 ? FileStatus() : Failure(what, m_path, errno);
  }

  int m_descriptor;
  AString m_path;
  // Of the question what stands under a path.
  LongFileName m_askedPath;
  std::string m_askedName;
  int m_folder = -1;
  dev_t m_device = 0;
  ino_t m_node = 0;
};

int Flags(OpenMode mode) {
  switch (mode) {
  case OpenMode::Read:
    return O_RDONLY;
  case OpenMode::ReadWrite:
    return O_RDWR;
  case OpenMode::Create:
    return O_RDWR | O_CREAT;
  case OpenMode::CreateNew:
    return O_RDWR | O_CREAT | O_EXCL;
  }
  return O_RDONLY;
}

class PosixFileSystem : public IFileSystem {
public:
  FileStatus Open(LongFileName const & path, OpenMode mode, std::unique_ptr<IFile> & opened) override {
    // O_NONBLOCK: the opening of a pipe would wait for its other end; for files it means nothing.
    int const descriptor = ::open(Bytes(path).c_str(), Flags(mode) | O_CLOEXEC | O_NONBLOCK, 0666);
    if (descriptor < 0)
      return Failure(L"open", path.FilePath(), errno);
    auto file = std::make_unique<PosixFile>(descriptor, path.FilePath());
    FileInfo info;
    if (FileStatus status = file->Describe(info); !status.Ok())
      return status;
    if (info.kind == FileKind::Folder)
      return Failure(L"open", path.FilePath(), EISDIR);
    opened = std::move(file);
    return {};
  }

  FileStatus Describe(LongFileName const & path, FileInfo & info) override {
    info = FileInfo();
    struct stat status {};
    if (::lstat(Bytes(path).c_str(), &status) != 0)
      return errno == ENOENT || errno == ENOTDIR ? FileStatus() : Failure(L"describe", path.FilePath(), errno);
    info.isLink = S_ISLNK(status.st_mode);
    if (info.isLink && ::stat(Bytes(path).c_str(), &status) != 0)
      return errno == ENOENT ? FileStatus() : Failure(L"describe", path.FilePath(), errno);
    Fill(info, status);
    return {};
  }

  FileStatus Rename(LongFileName const & from, LongFileName const & to) override {
    return Told(::rename(Bytes(from).c_str(), Bytes(to).c_str()), L"rename", from);
  }
  FileStatus RemoveFile(LongFileName const & path) override {
    return Told(::unlink(Bytes(path).c_str()), L"delete", path);
  }
  FileStatus RemoveFolder(LongFileName const & path) override {
    return Told(::rmdir(Bytes(path).c_str()), L"delete", path);
  }
  FileStatus MakeFolder(LongFileName const & path) override {
    return Told(::mkdir(Bytes(path).c_str(), 0777), L"create", path);
  }
  FileStatus SetMode(LongFileName const & path, unsigned mode) override {
    return Told(::chmod(Bytes(path).c_str(), mode), L"change the mode of", path);
  }

  FileStatus SyncFolder(LongFileName const & path) override {
    std::string const folder = path.IsEmpty() ? "." : Bytes(path);
    int const descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
      return Failure(L"open", path.FilePath(), errno);
    int const error = ::fsync(descriptor) == 0 ? 0 : errno;
    ::close(descriptor);
    // Some file systems know no sync of folders; they answer EINVAL.
    return error == 0 || error == EINVAL ? FileStatus() : Failure(L"sync", path.FilePath(), error);
  }

  FileStatus List(LongFileName const & path, std::vector<AString> & names) override {
    names.clear();
    std::string const folder = path.IsEmpty() ? "." : Bytes(path);
    DIR * const stream = ::opendir(folder.c_str());
    if (!stream)
      return Failure(L"list", path.FilePath(), errno);
    // The end and a failure look alike but for errno.
    auto const next = [stream] {
      errno = 0;
      return ::readdir(stream);
    };
    dirent const * entry = next();
    for (; entry; entry = next()) {
      std::string_view const name = entry->d_name;
      if (name != "." && name != "..")
        names.push_back(text::FromUtf8(name));
    }
    int const error = errno;
    ::closedir(stream);
    if (error != 0)
      return Failure(L"list", path.FilePath(), error);
    std::sort(names.begin(), names.end());
    return {};
  }

private:
  static FileStatus Told(int result, wchar_t const * what, LongFileName const & path) {
    return result == 0 ? FileStatus() : Failure(what, path.FilePath(), errno);
  }
};

IFileSystem * s_inUse = nullptr;

} // namespace

IFileSystem & SystemFiles() {
  static PosixFileSystem system;
  return system;
}

FileStatus IFile::StandsUnder(LongFileName const & path, Standing & standing) {
  FileInfo named;
  FileInfo mine;
  FileStatus status = FileSystem().Describe(path, named);
  if (status.Ok())
    status = Describe(mine);
  if (status.Ok())
    standing = named.kind == FileKind::None ? Standing::Vanished
               : mine.IsSameFile(named)     ? Standing::Same
                                            : Standing::Replaced;
  return status;
}

IFileSystem & FileSystem() { return s_inUse ? *s_inUse : SystemFiles(); }

IFileSystem * SetFileSystem(IFileSystem * fileSystem) {
  IFileSystem * const former = s_inUse;
  s_inUse = fileSystem;
  return former;
}

} // namespace file
