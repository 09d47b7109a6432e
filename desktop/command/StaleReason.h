#pragma once

#include "desktop/command/EditLog.h"

#include <optional>

class BaseSolution;
class BaseSolutionVariation;

namespace desktop {

class Session;

/// Why data is not valid, and what makes it so.
struct StaleReason {
  /// The edit; null when it was made before edits were kept.
  std::shared_ptr<EditStory const> story;
  /// Of data that names other variables than the design has: which ones.
  AString misfit;
  /// Each of them alone is enough, where it may be carried out.
  std::vector<AString> remedies;
  /// The last remedy solves this point anew; the others help all data of the version.
  bool canSolve = false;
};

/// Of data that was solved at another version than the present one of its solution, or that names other variables than
/// the design has.
StaleReason WhyStale(Session & session, BaseSolutionVariation const & variation);

/// Of the point at which the design's variables stand: nothing when it is valid, or was never another one.
struct UnsolvedPoint {
  StaleReason reason;
  /// A point that the variables had before, and that is valid.
  AString validVariation;
};
std::optional<UnsolvedPoint> WhyUnsolved(Session & session, BaseSolution const & solution);

} // namespace desktop
