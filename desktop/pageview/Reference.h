#pragma once

#include "basekit/text/AString.h"

#include <optional>

namespace desktop {
class Session;
}

namespace desktop::pageview {

/// The port of an S(p,p) as it is written there, name or number; nothing for any other expression.
std::optional<AString> PortOfReflection(AString const & expression);

/// The impedance that a complex expression refers to as a reflection: that of its port as it is shown, or the one that
/// all ports share.  Nothing where that is not known.
std::optional<double> ReferenceOf(Session & session, AString const & expression);

} // namespace desktop::pageview
