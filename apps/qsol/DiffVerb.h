#pragma once

#include "apps/qsol/OpenLibrary.h"
#include "apps/qsol/SelectionWords.h"

#include <optional>
#include <string>

namespace qsol {

struct Streams;

struct DiffOptions {
  /// The first file, and what is shown of both.
  ViewOptions view;
  std::string other;
  /// Which blocks are compared, and told where one library alone has them.
  SelectionWords selection;
  /// How far numbers may be apart; when one of them is given, the other is 0.
  std::optional<double> absolute;
  std::optional<double> relative;
  /// Every difference of a block, not the first few alone, and every number of a list.
  bool all = false;
  bool json = false;
};

int Diff(DiffOptions const & options, Streams const & streams);

} // namespace qsol
