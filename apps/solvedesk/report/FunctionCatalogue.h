#pragma once

#include "basekit/text/AString.h"
#include "viewkit/property/PropList.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

namespace val {
struct RangedFunction;
}

namespace solvedesk {

/// A ranged function as people are told of it.
struct FunctionEntry {
  AString category;
  AString name;
  AString description;
  PropList parameters;
  std::string result; ///< what the result is in, as in "x * y"
  val::RangedFunction const * engine = nullptr;
};

/// All of them, in the order of the catalogue.
std::vector<FunctionEntry> ListFunctions();

/// Those of a category, by name without case.  Throws desktop::Error that names all categories when there is none.
std::vector<FunctionEntry> FunctionsOfCategory(AString const & category);

/// By name without case.  Throws desktop::Error that names the nearest ones when there is none.
FunctionEntry FindFunction(AString const & name);

/// A line for each, under the names of their categories.
std::string FunctionsAsText(std::vector<FunctionEntry> const & functions);
/// All that is known of one.
std::string FunctionAsText(FunctionEntry const & function);
nlohmann::ordered_json FunctionAsJson(FunctionEntry const & function);

} // namespace solvedesk
