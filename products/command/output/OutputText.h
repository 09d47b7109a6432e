#pragma once

#include "desktop/product/IQuantityProduct.h"

#include <string>
#include <vector>

namespace command {

struct OutputLine;

/// The most numbers of one run.
inline constexpr std::size_t kMostNumbers = 10'000'000;

/// Takes the quantities of an output out of its text.  Throws SourceError that names output, line and thing: a column
/// or pointer that is not there, what is no finite number, no values, too many.
std::vector<desktop::QuantityValues> ReadOutputText(OutputLine const & output, std::string const & text);

// What ReadOutputText chooses from, by the output's form.
std::vector<desktop::QuantityValues> ReadTableText(OutputLine const & output, std::string const & text);
std::vector<desktop::QuantityValues> ReadJsonText(OutputLine const & output, std::string const & text);

} // namespace command
