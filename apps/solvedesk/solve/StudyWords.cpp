#include "apps/solvedesk/solve/StudyWords.h"

#include "apps/solvedesk/console/Console.h"
#include "desktop/Error.h"
#include "desktop/study/LatinHypercube.h"
#include "desktop/study/PointsFile.h"
#include "desktop/study/VaryWord.h"

#include <CLI/CLI.hpp>

namespace solvedesk {
namespace {

constexpr std::uint64_t kSeed = 1;

[[noreturn]] void Refuse(AString const & text) { throw desktop::Error(desktop::ErrorKind::kUsage, text); }

std::size_t SampleSize(StudyWords const & words, std::vector<std::vector<desktop::SampledRange>> const & dimensions) {
  if (!words.sample && !dimensions.empty()) {
    AString const & name = dimensions.front().front().name;
    Refuse(L"--vary " + name + L": a range has three numbers; write " + name + L"=A:B:STEP, or add --sample N");
  }
  if (words.seed && !words.sample)
    Refuse(L"--seed: belongs to --sample; add it");
  if (words.sample && dimensions.empty())
    Refuse(L"--sample: there is no range to take points from; add --vary NAME=A:B");
  if (words.sample && *words.sample < 1)
    Refuse(L"--sample: takes the number of points, 1 or more");
  if (words.sample && *words.sample > static_cast<long long>(desktop::kMostStudyPoints))
    Refuse(L"--sample: " + desktop::TooManyPoints(static_cast<double>(*words.sample)) + L"; take fewer");
  return static_cast<std::size_t>(words.sample.value_or(0));
}

} // namespace

void AddStudyOptions(CLI::App & verb, StudyWords & words) {
  verb.add_option("--vary", words.vary,
                  "NAME=A:B:STEP (B included when a step falls on it) or NAME=v1,v2,...; several make a grid; several "
                  "names in one word, as in a=1,2,3,b=10,20,30, run together")
      ->allow_extra_args(false);
  verb.add_option("--points", words.files,
                  "a file of comma-separated values: the first line names variables, each further one is a point")
      ->allow_extra_args(false);
  verb.add_option("--sample", words.sample, "number of points of a Latin hypercube over the ranges --vary NAME=A:B");
  verb.add_option("--seed", words.seed, "another sample for each number; the same one gives the same points; 1")
      ->type_name("NUMBER");
}

desktop::Study MakeStudy(StudyWords const & words) {
  desktop::Study study;
  std::vector<std::vector<desktop::SampledRange>> dimensions;
  std::vector<desktop::StudyAxis> axes;
  for (std::string const & text : words.vary) {
    desktop::VaryWord word = desktop::ReadVaryWord(ArgumentText(text));
    if (word.ranges.empty())
      axes.push_back(std::move(word.axis));
    else
      dimensions.push_back(std::move(word.ranges));
  }
  std::size_t const count = SampleSize(words, dimensions);
  for (std::string const & file : words.files)
    study.Add(desktop::ReadPointsFile(ArgumentText(file)));
  if (count > 0)
    study.Add(desktop::SampleLatinHypercube(dimensions, count, words.seed.value_or(kSeed)));
  for (desktop::StudyAxis & axis : axes)
    study.Add(std::move(axis));
  return study;
}

} // namespace solvedesk
