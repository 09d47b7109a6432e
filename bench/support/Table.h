#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace bench {

/// Results as people read them: a line for each engine and workload, for each size the time of one operation and its
/// ratio to the baseline at the same size, in the end what the operation costs at the largest size compared with the
/// smallest.
std::string TableOf(std::vector<nlohmann::json> const & lines, std::string const & baseline);

} // namespace bench
