#pragma once

class AString;

namespace desktop {

/// The text with line ends, tabs and other control characters as single blanks: for errors, which take one line each.
AString OneLine(AString const & text);

} // namespace desktop
