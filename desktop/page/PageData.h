#pragma once

#include <nlohmann/json_fwd.hpp>

namespace desktop::page {

class NumberColumns;
struct Document;

/// What the script of a page reads: the document's structure and texts, with numbers as places in the columns, to which
/// they are added.
nlohmann::ordered_json PageData(Document const & document, NumberColumns & columns);

} // namespace desktop::page
