#pragma once

#include <string>

namespace io {
class CBlock;
} // namespace io

namespace qsol {

/// The numbers of a block as comma-separated values, exact, in UTF-8; empty when it has none.  A column for each list
/// with a number among its arguments, whose rows are these arguments, and for each single number, which stands in the
/// first row.  Its title is the path, "Ports/Port(in)/Z0": items of one name are told apart by the text that they hold
/// as their Name, or where that tells nothing by their number from 1.
std::string NumbersAsCsv(io::CBlock const & block);

} // namespace qsol
