#pragma once

#include "basekit/text/AString.h"

#include <cstddef>
#include <vector>

/// What the takeover of a private library file did, for people: a plain value that the manager fills while it recovers.
/// Counts are of what stands when the takeover is done; whatever the files held and the model doesn't any more is
/// listed as dropped, with the reason.  Names are those that the design remembers.
struct RecoveryReport {
  enum class Outcome {
    kNotTried,  ///< there was no private file to take over, or nobody asked
    kTakenOver, ///< the public file holds all that was taken over
    kFailed     ///< see failure; the files are as they were, or better
  };
  enum class Failure {
    kNone,
    kNameMapDamaged,    ///< the map of block names can't be read from one of the files
    kFileRefused,       ///< the private file belongs to another public file, is locked or can't be read
    kNotWritten,        ///< the merged map of names didn't reach the disk
    kDefinitionsDamaged ///< a definition block can't be read
  };
  enum class Reason {
    kBlockLost,       ///< a name whose block neither file holds whole
    kNameGone,        ///< renamed or deleted before the crash, on purpose: the private file's map has the name no more
    kSetupUnknown,    ///< the design has no such setup
    kSolutionUnknown, ///< the setup has no such solution
    kOtherVersion,    ///< of a version that the design doesn't remember as current
    kSetupDeleted,    ///< the setup was deleted before the crash
    kSolutionDeleted  ///< the solution was deleted before the crash
  };
  /// Blocks of the private file that are part of the public one now; those of a setup itself have no solution name.
  struct TakenOver {
    long setupID = -1;
    long solutionID = -1; ///< -1 for a setup itself
    AString setup;
    AString solution;
    std::size_t blocks = 0;
    std::size_t variations = 0; ///< variations with data; zero for a setup itself
  };
  struct Dropped {
    AString realName; ///< a packed SolutionVariationKey
    Reason reason;
  };

  Outcome outcome = Outcome::kNotTried;
  Failure failure = Failure::kNone;
  bool isCommitted = false;   ///< else what was taken over stands in the private file alone
  std::size_t blocks = 0;     ///< taken over, of all kinds
  std::size_t variations = 0; ///< different design variations with data among them
  std::vector<AString> setups;
  std::vector<TakenOver> takenOver; ///< in the order of setup and solution IDs
  std::vector<Dropped> dropped;     ///< in the order in which it was noticed
  std::vector<AString> realNames;   ///< of the blocks that were taken over; packed keys but for the header's
};

/// Plain words, for a line of output; empty for no failure.
AString TextOf(RecoveryReport::Outcome outcome);
AString TextOf(RecoveryReport::Failure failure);
AString TextOf(RecoveryReport::Reason reason);
