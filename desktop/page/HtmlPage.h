#pragma once

#include <string>

namespace desktop::page {

struct Document;

/// The document as one HTML page in UTF-8.  It holds all it needs, numbers with all their digits, and asks nothing of
/// any network; its policy forbids the browser to run any script but the page's own, whatever the document's names say.
std::string HtmlPage(Document const & document);

} // namespace desktop::page
