#pragma once

#include "apps/qsol/OpenLibrary.h"
#include "apps/qsol/SelectionWords.h"

namespace qsol {

struct Streams;

struct ListOptions {
  ViewOptions view;
  SelectionWords selection;
  bool json = false;
};

int List(ListOptions const & options, Streams const & streams);

} // namespace qsol
