#include "apps/solvedesk/OutputFile.h"

#include "apps/solvedesk/Console.h"
#include "apps/solvedesk/Delivery.h"
#include "desktop/Error.h"

#include <filesystem>

namespace solvedesk {

void WriteOutputFile(std::string const & option, std::string const & file, std::string const & text) {
  namespace fs = std::filesystem;
  using desktop::ErrorKind;
  fs::path const path(file);
  AString const who = ArgumentText(option + " " + file);
  if (!path.has_filename())
    throw desktop::Error(ErrorKind::kUsage, who + L": names no file; give one");
  fs::path const folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
  if (std::error_code ignored; !fs::is_directory(folder, ignored))
    throw desktop::Error(ErrorKind::kStorage,
                         who + L": there is no folder " + ArgumentText(folder.string()) + L"; make it first");
  Delivery delivery(folder);
  delivery.WriteFile(path.filename().string(), text);
  delivery.Deliver();
}

} // namespace solvedesk
