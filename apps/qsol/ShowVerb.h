#pragma once

#include "apps/qsol/OpenLibrary.h"
#include "apps/qsol/SelectionWords.h"

#include <string>
#include <vector>

namespace qsol {

struct Streams;

struct ShowOptions {
  ViewOptions view;
  /// Internal or real ones.
  std::vector<std::string> names;
  /// Without names: which blocks; with names it does not count.
  SelectionWords selection;
  bool json = false;
  bool raw = false;
};

int Show(ShowOptions const & options, Streams const & streams);

} // namespace qsol
