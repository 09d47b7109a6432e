// Runs a fuzzer's entry over its corpus, over every head of each file and over each file with single bits flipped.

#include "fuzz/Entry.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace {

std::vector<std::filesystem::path> CorpusFiles() {
  std::vector<std::filesystem::path> files;
  for (auto const & entry : std::filesystem::directory_iterator(FUZZ_CORPUS))
    files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

std::string Content(std::filesystem::path const & path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

void Feed(std::string const & input) {
  LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const *>(input.data()), input.size());
}

} // namespace

TEST(FuzzCorpus, EveryInputIsReadOrRefused) {
  auto const files = CorpusFiles();
  ASSERT_FALSE(files.empty());
  for (auto const & path : files)
    Feed(Content(path));
}

TEST(FuzzCorpus, EveryCutInputIsReadOrRefused) {
  for (auto const & path : CorpusFiles()) {
    std::string const whole = Content(path);
    std::size_t const step = 1 + whole.size() / 300;
    for (std::size_t length = 0; length < whole.size(); length += step)
      Feed(whole.substr(0, length));
  }
}

TEST(FuzzCorpus, EveryInputWithAFlippedBitIsReadOrRefused) {
  for (auto const & path : CorpusFiles()) {
    std::string damaged = Content(path);
    std::size_t const step = 1 + damaged.size() / 300;
    for (std::size_t at = 0; at < damaged.size(); at += step) {
      char const bit = static_cast<char>(1 << (at % 8));
      damaged[at] = static_cast<char>(damaged[at] ^ bit);
      Feed(damaged);
      damaged[at] = static_cast<char>(damaged[at] ^ bit);
    }
  }
}
