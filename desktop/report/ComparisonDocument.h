#pragma once

#include "basekit/text/AString.h"

namespace desktop {

namespace page {
struct Document;
}

struct Comparison;

/// A comparison for people: what was found, the parameters of both in one plot and their differences in another, and
/// the numbers.  The names are those of first and second.
page::Document ComparisonDocument(Comparison const & comparison, AString const & first, AString const & second);

} // namespace desktop
