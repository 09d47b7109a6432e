#pragma once

#include "desktop/study/StudyAxis.h"

namespace desktop {

/// A range of which a sample takes its values.
struct SampledRange {
  AString name;
  double from = 0.0;
  double to = 0.0;
};

/// What one word asks for.
///
///     WORD   = PART { "," PART }              the variables of a word run together, row by row
///     PART   = NAME "=" VALUES
///     VALUES = A:B:STEP | v1,v2,... | A:B      the last one for samples
///
/// A piece between commas that holds "=" begins a part, as no number does; all others go on with the list before.
struct VaryWord {
  StudyAxis axis;                   ///< without names when the word gives ranges to be sampled
  std::vector<SampledRange> ranges; ///< these take the same place in their ranges in each point
};

/// Throws Error (kUsage) for words that make no sense, and for parts that are not equally long.
VaryWord ReadVaryWord(AString const & word);

/// "NAME=VALUE" taken apart; throws Error (kUsage) that names `where` when one of them is missing.
std::pair<AString, AString> SplitAssignment(AString const & word, AString const & where);

} // namespace desktop
