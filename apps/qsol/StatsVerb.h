#pragma once

#include "apps/qsol/OpenLibrary.h"

namespace qsol {

struct Streams;

struct StatsOptions {
  ViewOptions view;
  bool json = false;
};

int Stats(StatsOptions const & options, Streams const & streams);

} // namespace qsol
