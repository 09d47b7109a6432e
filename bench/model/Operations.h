#pragma once

#include "bench/model/Model.h"

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// One question to the model or one change of it.
struct Operation {
  std::string name;
  /// The number of a solved variation; for an operation that doesn't ask for one it means nothing.
  std::function<void(std::size_t)> call;
  /// What one call goes over; 1 for a question that names its variation.
  std::size_t items = 1;
  /// It writes to the library each time, or goes over everything: few calls are enough.
  bool isLong = false;
};

/// All operations that leave the model as it was but for new variation IDs, versions and
/// records of solves in the library.
std::vector<Operation> AllOperations(Model & model);

} // namespace bench
