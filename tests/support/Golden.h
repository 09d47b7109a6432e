#pragma once

#include <gtest/gtest.h>
#include <string>

namespace support {

/// Whether a text is that of tests/golden/NAME, to the byte.  When not, what came stands beside the file as
/// NAME.received, to be looked at and renamed if it is right.
testing::AssertionResult MatchesGolden(std::string const & folder, std::string const & name, std::string const & text);

/// What tests/golden/NAME holds; empty when it can't be read.
std::string GoldenText(std::string const & folder, std::string const & name);

} // namespace support
