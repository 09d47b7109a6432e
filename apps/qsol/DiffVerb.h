#pragma once

#include "apps/qsol/OpenLibrary.h"

#include <string>

namespace qsol {

struct Streams;

struct DiffOptions {
  /// The first file, and what is shown of both.
  ViewOptions view;
  std::string other;
  /// Every difference of a block, not the first few alone.
  bool all = false;
  bool json = false;
};

int Diff(DiffOptions const & options, Streams const & streams);

} // namespace qsol
