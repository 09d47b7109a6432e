#pragma once

#include "bench/locations/PlainOwner.h"

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// Keyed questions in one measurement.
struct Queries {
  std::size_t count = 100000;
  bool isRandom = false;
};

/// One measured span: `prepare` makes what it needs and does not count.
struct Span {
  std::string workload;
  std::function<void()> prepare;
  std::function<void()> run;
  /// What one run does so many times.
  std::size_t operations;
};

/// What is measured of each family, in an order in which each span finds what the one before it left.  The store and
/// its owner live in the functions.
struct Family {
  std::string engine;
  std::vector<Span> spans;
};

/// Plain containers and system calls that do the work that can't be left out: the baseline.
Family PlainWork(std::string const & folder, std::size_t n, Queries const & queries);
Family Values(std::string const & folder, std::size_t n, Queries const & queries);
Family Locations(std::string const & folder, std::size_t n, Queries const & queries);
Family Numbers(std::string const & folder, std::size_t n, Queries const & queries);
/// The version map with n versions.
Family Versions(std::string const & folder, std::size_t n, Queries const & queries);

} // namespace bench
