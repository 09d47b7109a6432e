#include "tests/support/Golden.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace support {

testing::AssertionResult MatchesGolden(std::string const & folder, std::string const & name, std::string const & text) {
  std::filesystem::path const file = std::filesystem::path(folder) / name;
  std::filesystem::path const received = file.string() + ".received";
  std::ostringstream approved;
  if (std::ifstream in(file, std::ios::binary); in)
    approved << in.rdbuf();
  if (approved.str() == text) {
    std::filesystem::remove(received);
    return testing::AssertionSuccess();
  }
  std::ofstream(received, std::ios::binary) << text;
  return testing::AssertionFailure() << file << " differs from " << received << ":\n" << text;
}

} // namespace support
