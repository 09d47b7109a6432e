#include "products/command/process/ScratchFolder.h"

#include "products/command/source/SourceError.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <system_error>

namespace command {

ScratchFolder::ScratchFolder() {
  std::error_code ignored; // a folder for temporary files that is not there can't hold a new one
  std::string name = (std::filesystem::temp_directory_path(ignored) / "solvedesk-run-XXXXXX").string();
  if (!::mkdtemp(name.data()))
    throw SourceError(name, 0,
                      std::string("the scratch folder can't be made (") + std::strerror(errno) +
                          "); make room, or name another folder by TMPDIR");
  m_path = name;
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored; // what can't be removed is left to whoever cleans temporary files
  std::filesystem::remove_all(m_path, ignored);
}

} // namespace command
