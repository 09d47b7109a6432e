#pragma once

#include "apps/qsol/OpenLibrary.h"
#include "apps/qsol/SelectionWords.h"

#include <string>
#include <vector>

namespace qsol {

struct Streams;

struct ExtractOptions {
  ViewOptions view;
  /// Internal or real ones.
  std::vector<std::string> names;
  /// Without names: which blocks.
  SelectionWords selection;
  bool all = false;
  std::string folder;
  /// The stored bytes, not the text form.
  bool raw = false;
  /// The numbers as comma-separated values; a block without any gives no file.
  bool csv = false;
  /// Files that stand there are replaced.
  bool force = false;
  bool json = false;
};

int Extract(ExtractOptions const & options, Streams const & streams);

} // namespace qsol
