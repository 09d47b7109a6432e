#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace desktop {
struct Comparison;
}

namespace solvedesk {

/// For people: how it was done, a line for each parameter, and on request their numbers.
std::string ComparisonAsText(desktop::Comparison const & comparison, std::string const & first,
                             std::string const & second, bool hasNumbers);
/// A row for each parameter and place, with numbers that read back bit for bit.
std::string ComparisonAsCsv(desktop::Comparison const & comparison);
nlohmann::ordered_json ComparisonAsJson(desktop::Comparison const & comparison, std::string const & first,
                                        std::string const & second);

} // namespace solvedesk
