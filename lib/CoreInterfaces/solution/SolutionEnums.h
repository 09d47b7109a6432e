#pragma once

/// How well a solution fits a definition asked for.
enum class SolutionDefinitionMatch : int {
  kExact = 0,
  kProduct = 1, ///< a product's own judgement; the base classes never give it
  kNone = 2
};

/// How a design's module is read and written.
enum class ReadMethod : int {
  kDefinitionOnly = 0,
  kAllFiles = 1
};

/// What a solve that was asked for came to.
enum class RunStatusType : int { kNotRun = 0, kRunning = 1, kDone = 2, kFailed = 3 };

/// Answers of a setup to a request to solve.
enum SolveRequestCode : int {
  kNothingToSolve = 5001,
  kAlreadySolving = 5002,
  kSolveRefused = 5003,
  kSolveSubmitted = 5004
};

/// Which versions an invalidation replaces; added up.
enum InvalidationFlag : int {
  kInvalidateManager = 1,
  kInvalidateSetups = 2,
  kInvalidateSolutions = 4
};
