#include "tests/support/Golden.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace support {

std::string GoldenText(std::string const & folder, std::string const & name) {
  std::ostringstream text;
  if (std::ifstream in(std::filesystem::path(folder) / name, std::ios::binary); in)
    text << in.rdbuf();
  return text.str();
}

testing::AssertionResult MatchesGolden(std::string const & folder, std::string const & name, std::string const & text) {
  std::filesystem::path const file = std::filesystem::path(folder) / name;
  std::filesystem::path const received = file.string() + ".received";
  if (std::filesystem::exists(file) && GoldenText(folder, name) == text) {
    std::filesystem::remove(received);
    return testing::AssertionSuccess();
  }
  std::ofstream(received, std::ios::binary) << text;
  return testing::AssertionFailure() << file << " differs from " << received << ":\n" << text;
}

} // namespace support
