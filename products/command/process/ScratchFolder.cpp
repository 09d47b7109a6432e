#include "products/command/process/ScratchFolder.h"

#include "products/command/source/SourceError.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace command {

ScratchFolder::ScratchFolder() {
  std::error_code failure;
  std::string name = (std::filesystem::temp_directory_path(failure) / "solvedesk-run-XXXXXX").string();
  if (!failure && !::mkdtemp(name.data()))
    failure = std::error_code(errno, std::generic_category());
  if (failure)
    throw SourceError("the scratch folder can't be made in the folder for temporary files (" + failure.message() +
                      "); make room there, or name another folder by TMPDIR");
  m_path = name;
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored; // what can't be removed is left to whoever cleans temporary files
  std::filesystem::remove_all(m_path, ignored);
}

} // namespace command
