#pragma once

#include "apps/qsol/NumberRule.h"
#include "basekit/io/CBlock_ptr.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace io {
class CBlock;
class CBlock_item;
} // namespace io

namespace qsol {

/// How trees are compared.
struct DiffRules {
  std::optional<NumberRule> numbers;
  /// Every number and argument by itself, however many of a list differ.
  bool eachNumber = false;
};

/// One place where two trees differ.  An item stands in one of them alone, a value in both, unlike; null is nothing
/// there.
struct Difference {
  /// "Ports/Port[2]/Z0": names from the top; numbers count from 1, among items of the same name and kind or among
  /// the arguments without a name.
  std::string path;
  io::CBlock_ptr<io::CBlock_item> a;
  io::CBlock_ptr<io::CBlock_item> b;
  /// The same children stand in another order; neither item is given.
  bool isOrder = false;
  /// Of two numbers.
  std::optional<NumberPair> numbers;

  /// Many numbers of one list, which have no items here: how many differ of how many that both lists have, the first
  /// one and the one with the largest relative difference.
  struct Column {
    std::size_t differing = 0;
    std::size_t compared = 0;
    std::vector<Difference> firstAndLargest;
  };
  std::optional<Column> column;

  /// Lists of which one is longer by many arguments, which have no items here.
  struct Lengths {
    std::size_t a = 0;
    std::size_t b = 0;
  };
  std::optional<Lengths> lengths;

  /// A line without its end; a long item is shortened.
  std::string Text() const;
};

/// Numbers of one verdict, and where the largest relative difference among them is.
struct NumberTally {
  std::size_t count = 0;
  double largest = 0.0;
  std::string at;

  /// Whether the place of this one is to be told.
  bool Count(double relative) {
    bool const isLargest = ++count == 1 || relative > largest;
    largest = isLargest ? relative : largest;
    return isLargest;
  }
};

struct TreeDifferences {
  /// In the order of the trees; empty when both have the same text form, or numbers that are near alone.
  std::vector<Difference> list;
  NumberTally differing;
  NumberTally near; ///< unlike, but the same by the rule
};

TreeDifferences DifferencesOf(io::CBlock const & a, io::CBlock const & b, DiffRules const & rules = {});

} // namespace qsol
