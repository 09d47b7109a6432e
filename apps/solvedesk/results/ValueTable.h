#pragma once

#include "basekit/text/AString.h"
#include "desktop/product/IQuantityProduct.h"

#include <nlohmann/json.hpp>

#include <string>
#include <utility>
#include <vector>

namespace solvedesk {

/// The stored quantities of one solved point, with where they belong.
struct PointValues {
  std::string setup;
  std::string solution;
  AString variation;
  std::vector<std::pair<std::string, std::string>> variables; ///< of the variation
  std::vector<desktop::QuantityValues> quantities;
};

// The forms in which values are told; numbers read back bit for bit in all of them.

/// For people: scalars one a line, columns as a table.
std::string ValuesAsText(PointValues const & point);
nlohmann::ordered_json ValuesAsJson(PointValues const & point);
/// The header row: setup, the variables, the quantities.
std::string CsvHeader(PointValues const & point);
/// A row for each number of the longest column, or one row; scalars stand in each, shorter columns end in blanks.
std::string ValuesAsCsv(PointValues const & point);

} // namespace solvedesk
