#include "apps/solvedesk/console/Delivery.h"

#include "basekit/text/Utf8.h"
#include "desktop/Error.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <system_error>
#include <unistd.h>

namespace solvedesk {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Refuse(fs::path const & path, std::string const & problem) {
  throw desktop::Error(desktop::ErrorKind::kStorage, text::FromUtf8(path.string() + ": " + problem));
}

[[noreturn]] void Refuse(fs::path const & path, std::error_code const & code) {
  Refuse(path, "can't be written: " + code.message() + "; check the folder, its permissions and the room on the disk");
}

void Sync(fs::path const & path) {
  int const descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  bool const isSynced =
      descriptor >= 0 && (::fsync(descriptor) == 0 || errno == EINVAL); // Some know no sync of folders.
  int const error = errno;
  if (descriptor >= 0)
    ::close(descriptor);
  if (!isSynced)
    Refuse(path, std::error_code(error, std::generic_category()));
}

// A move that fails when it must, without a word when it is part of tidying up.
std::error_code Move(fs::path const & from, fs::path const & to) {
  std::error_code code;
  fs::rename(from, to, code);
  return code;
}

} // namespace

Delivery::Delivery(fs::path const & folder) : m_folder(folder) {
  try {
    Prepare();
  } catch (...) {
    TidyUp();
    throw;
  }
}

void Delivery::Prepare() {
  std::error_code code;
  if (fs::exists(m_folder, code) && !fs::is_directory(m_folder, code))
    Refuse(m_folder, "is no folder; name another one");
  for (fs::path missing = m_folder; !missing.empty() && !fs::exists(missing, code); missing = missing.parent_path())
    if (missing.has_filename())
      m_madeFolders.push_back(missing);
  fs::create_directories(m_folder, code);
  if (code)
    Refuse(m_folder, code);
  MakeWorkplace();
}

void Delivery::MakeWorkplace() {
  std::string name = (m_folder / (std::string(kWorkplace) + "XXXXXX")).string();
  if (!mkdtemp(name.data()))
    Refuse(m_folder, std::error_code(errno, std::generic_category()));
  m_made = name;
  m_workplace = fs::path(name) / "new";
  m_former = fs::path(name) / "former";
  std::error_code code;
  if (!fs::create_directory(m_workplace, code) || !fs::create_directory(m_former, code))
    Refuse(m_folder, code);
}

Delivery::~Delivery() { TidyUp(); }

void Delivery::TidyUp() {
  std::error_code ignored;
  if (!m_made.empty())
    fs::remove_all(m_made, ignored);
  if (m_placed.empty())
    for (fs::path const & made : m_madeFolders)
      fs::remove(made, ignored); // does nothing while something is in it
}

void Delivery::WriteFile(std::string const & name, std::string const & text) {
  errno = 0;
  std::ofstream file(m_workplace / name, std::ios::binary | std::ios::trunc);
  file << text;
  file.close();
  if (!file)
    Refuse(m_folder / name, std::error_code(errno ? errno : EIO, std::generic_category()));
}

void Delivery::Deliver() {
  std::vector<std::string> names;
  std::error_code code;
  fs::directory_iterator entry(m_workplace, code);
  for (; !code && entry != fs::directory_iterator(); entry.increment(code))
    names.push_back(entry->path().filename().string());
  if (code)
    Refuse(m_folder, code);
  std::sort(names.begin(), names.end());
  try {
    for (std::string const & name : names)
      TakePlace(name);
  } catch (...) {
    PutBack();
    throw;
  }
}

void Delivery::DeliverForGood() {
  std::error_code code;
  fs::recursive_directory_iterator entry(m_workplace, code);
  for (; !code && entry != fs::recursive_directory_iterator(); entry.increment(code))
    Sync(entry->path());
  if (code)
    Refuse(m_folder, code);
  Deliver();
  try {
    Sync(m_folder);
  } catch (...) {
    PutBack();
    throw;
  }
}

void Delivery::TakePlace(std::string const & name) {
  std::error_code code;
  fs::file_status const status = fs::symlink_status(m_folder / name, code);
  if (fs::is_directory(status))
    Refuse(m_folder / name, "is a folder that stands where a file is to go; move it away");
  bool const replaces = fs::exists(status);
  if (replaces && (code = Move(m_folder / name, m_former / name)))
    Refuse(m_folder / name, code);
  m_placed.emplace_back(name, replaces);
  if ((code = Move(m_workplace / name, m_folder / name)))
    Refuse(m_folder / name, code);
}

void Delivery::PutBack() {
  std::error_code ignored;
  for (auto const & [name, replaced] : m_placed) {
    if (replaced)
      Move(m_former / name, m_folder / name);
    else
      fs::remove_all(m_folder / name, ignored);
  }
  m_placed.clear();
}

} // namespace solvedesk
