#pragma once

#include "basekit/text/AString.h"

#include <iosfwd>

void PrintTo(AString const & text, std::ostream * out);
