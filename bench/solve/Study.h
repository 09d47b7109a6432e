#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>

namespace bench {

/// A study in a folder of its own, of solves that take so many milliseconds each.
struct StudySize {
  std::string folder;
  std::size_t points = 0;
  int workers = 2;
  double milliseconds = 0;
};

/// Makes a project, queues the points, solves and saves them: the seconds of each step, the processor time that this
/// process used while it solved, and its memory.  The overhead is what is left beside a baseline: as many threads as
/// there are workers that wait as long as the solves do.
nlohmann::json RunStudy(StudySize const & size);

} // namespace bench
