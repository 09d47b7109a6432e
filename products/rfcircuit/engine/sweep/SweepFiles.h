#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace rf {

/** What a solve leaves as files beside its S-parameters.  Nothing unless it is asked for: each file is made for itself,
    while data is stored in batches, and a Touchstone file can be had from the data at any time. */
struct SweepFiles {
  static constexpr std::size_t MOST_VOLTAGES = 1000;

  bool touchstone = false;
  std::optional<double> z0;     ///< ohm, to which the Touchstone file is renormalized; without it that of the ports
  std::vector<double> voltages; ///< hertz, ascending: where the voltages of all nodes are stored

  bool operator==(SweepFiles const &) const = default;

  bool IsEmpty() const { return !touchstone && voltages.empty(); }
  /** Sorts, drops what is equal, and throws NetlistError for numbers that make no sense. */
  void Check();
};

} // namespace rf
