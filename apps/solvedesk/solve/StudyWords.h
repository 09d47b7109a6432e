#pragma once

#include "desktop/study/Study.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace solvedesk {

/// The words that tell which points are solved.
struct StudyWords {
  std::vector<std::string> vary;
  std::vector<std::string> files;
  std::optional<long long> sample;
  std::optional<std::uint64_t> seed;
};

void AddStudyOptions(CLI::App & verb, StudyWords & words);
/// Throws desktop::Error (kUsage) for words and files that make no sense.
desktop::Study MakeStudy(StudyWords const & words);

} // namespace solvedesk
