#pragma once

#include "apps/qsol/SelectionWords.h"

#include <optional>
#include <string>

namespace qsol {

struct Streams;
struct OpenedLibrary;

struct FollowOptions {
  std::string file;
  SelectionWords selection;
  /// What is there now, and no more.
  bool once = false;
  /// The content of each block too.
  bool items = false;
  std::optional<double> seconds;
  bool json = false;
};

/// Opens a library with whatever private file it has or will have; throws Failure where it can't be followed.
void OpenToFollow(std::string const & file, OpenedLibrary & opened);
int Follow(FollowOptions const & options, Streams const & streams);

} // namespace qsol
