#include "apps/solvedesk/console/OutputFile.h"

#include "apps/solvedesk/console/Console.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace solvedesk {
namespace {

namespace fs = std::filesystem;
using desktop::Error;
using desktop::ErrorKind;

fs::path FolderOf(fs::path const & file) { return file.has_parent_path() ? file.parent_path() : fs::path("."); }

[[noreturn]] void Refuse(std::string const & option, std::string const & file, std::error_code const & code) {
  throw Error(ErrorKind::kStorage, text::FromUtf8(option + " " + file + ": can't be written: " + code.message() +
                                                  "; check the folder, its permissions and the room on the disk"));
}

/// A folder beside the file, which goes with this object.
class Workplace {
public:
  Workplace(std::string const & option, std::string const & file)
      : m_path((FolderOf(file) / ".solvedesk-XXXXXX").string()) {
    if (!mkdtemp(m_path.data()))
      Refuse(option, file, std::error_code(errno, std::generic_category()));
  }
  ~Workplace() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
  }
  Workplace(Workplace const &) = delete;
  Workplace & operator=(Workplace const &) = delete;

  fs::path File() const { return fs::path(m_path) / "new"; }

private:
  std::string m_path;
};

} // namespace

void CheckOutputFile(std::string const & option, std::string const & file) {
  fs::path const path(file);
  AString const told = text::FromUtf8(option) + L" " + ArgumentText(file);
  if (!path.has_filename())
    throw Error(ErrorKind::kUsage, told + L": names no file; give one");
  std::error_code ignored;
  if (!fs::is_directory(FolderOf(path), ignored))
    throw Error(ErrorKind::kStorage,
                told + L": there is no folder " + ArgumentText(FolderOf(path).string()) + L"; make it first");
  if (fs::is_directory(path, ignored))
    throw Error(ErrorKind::kStorage, told + L": is a folder; name a file");
}

void WriteOutputFile(std::string const & option, std::string const & file, std::string const & text) {
  CheckOutputFile(option, file);
  Workplace const workplace(option, file);
  errno = 0;
  std::ofstream out(workplace.File(), std::ios::binary | std::ios::trunc);
  out << text;
  out.close();
  if (!out)
    Refuse(option, file, std::error_code(errno ? errno : EIO, std::generic_category()));
  std::error_code code;
  fs::rename(workplace.File(), file, code);
  if (code)
    Refuse(option, file, code);
}

} // namespace solvedesk
