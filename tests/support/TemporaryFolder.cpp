#include "tests/support/TemporaryFolder.h"

#include <random>
#include <string>
#include <unistd.h>

namespace support {

TemporaryFolder::TemporaryFolder() {
  std::random_device random;
  m_path = std::filesystem::temp_directory_path() /
           ("solutionmanager-" + std::to_string(::getpid()) + "-" + std::to_string(random()));
  std::filesystem::create_directories(m_path);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

} // namespace support
