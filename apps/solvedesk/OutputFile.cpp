#include "apps/solvedesk/OutputFile.h"

#include "apps/solvedesk/Console.h"
#include "apps/solvedesk/Delivery.h"
#include "desktop/Error.h"

#include <filesystem>

namespace solvedesk {

namespace {

namespace fs = std::filesystem;
using desktop::Error;
using desktop::ErrorKind;

fs::path FolderOf(fs::path const & file) { return file.has_parent_path() ? file.parent_path() : fs::path("."); }

} // namespace

void CheckOutputFile(std::string const & option, std::string const & file) {
  fs::path const path(file);
  AString const who = ArgumentText(option + " " + file);
  if (!path.has_filename())
    throw Error(ErrorKind::kUsage, who + L": names no file; give one");
  std::error_code ignored;
  if (!fs::is_directory(FolderOf(path), ignored))
    throw Error(ErrorKind::kStorage,
                who + L": there is no folder " + ArgumentText(FolderOf(path).string()) + L"; make it first");
  if (fs::is_directory(path, ignored))
    throw Error(ErrorKind::kStorage, who + L": is a folder; name a file");
}

void WriteOutputFile(std::string const & option, std::string const & file, std::string const & text) {
  CheckOutputFile(option, file);
  fs::path const path(file);
  Delivery delivery(FolderOf(path));
  delivery.WriteFile(path.filename().string(), text);
  delivery.Deliver();
}

} // namespace solvedesk
