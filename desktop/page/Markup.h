#pragma once

#include "basekit/text/AString.h"

#include <string>
#include <string_view>

namespace desktop::page {

/// Text as it may stand between tags and in quoted attributes of HTML and XML.  Control characters, which XML forbids
/// in any form, become U+FFFD.
std::string EscapedMarkup(AString const & text);

/// JSON that may stand in a script element: nothing in it can end the element or begin a comment.
std::string EscapedJson(std::string_view json);

} // namespace desktop::page
