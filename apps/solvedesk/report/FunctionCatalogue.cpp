#include "apps/solvedesk/report/FunctionCatalogue.h"

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/TextTable.h"
#include "basekit/value/expression/FunctionTable.h"
#include "basekit/value/ranged/RangedFunction.h"
#include "desktop/Error.h"
#include "desktop/message/NearestNames.h"
#include "solutionmanager/functions/RangedFunctionCatalogue.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace solvedesk {
namespace {

using desktop::Error;
using desktop::ErrorKind;

char const * ResultOf(ranged::Scale scale) {
  switch (scale) {
  case ranged::Scale::kX:
    return "x";
  case ranged::Scale::kY:
    return "y";
  case ranged::Scale::kYY:
    return "y^2";
  case ranged::Scale::kXY:
    return "x * y";
  case ranged::Scale::kXYY:
    return "x * y^2";
  default:
    return "a number of its own";
  }
}

std::string InputOf(val::RangedInput input) {
  switch (input) {
  case val::RangedInput::kGain:
    return "a response over frequency, complex or real";
  case val::RangedInput::kAnyTrace:
    return "any trace; a complex one counts by its magnitude";
  default:
    return "a real trace; a complex one counts by its magnitude";
  }
}

AString DefaultText(ValueProp const & parameter) { return parameter.GetValue().GetText(); }

} // namespace

std::vector<FunctionEntry> ListFunctions() {
  std::vector<FunctionEntry> functions;
  for (ranged::CatalogueGroup const & group : ranged::CatalogueGroups()) {
    for (ranged::CatalogueRow const & row : group.rows)
      functions.push_back({AString(group.category), AString(row.name), AString(row.description),
                           ranged::ParameterList(row.parameters), ResultOf(row.scale),
                           val::FindRangedFunction(row.name)});
  }
  return functions;
}

std::vector<FunctionEntry> FunctionsOfCategory(AString const & category) {
  std::vector<FunctionEntry> functions = ListFunctions();
  AString known;
  AString last;
  for (FunctionEntry const & function : functions) {
    if (function.category != last)
      known += (known.empty() ? L"'" : L", '") + function.category + L"'";
    last = function.category;
  }
  std::erase_if(functions,
                [&](FunctionEntry const & function) { return !AString::MatchNoCase(function.category, category); });
  if (functions.empty())
    throw Error(ErrorKind::kUsage, L"--category '" + category + L"': there is none of that name; there are " + known);
  return functions;
}

FunctionEntry FindFunction(AString const & name) {
  std::vector<FunctionEntry> const functions = ListFunctions();
  auto const found = std::find_if(functions.begin(), functions.end(), [&](FunctionEntry const & function) {
    return AString::MatchNoCase(function.name, name);
  });
  if (found != functions.end())
    return *found;
  if (expr::FindElementFunction(name.View()) || expr::FindColumnFunction(name.View()))
    throw Error(ErrorKind::kUsage, L"'" + name + L"' gives a value for each sample, in expressions, and a ranged " +
                                       L"function one for the trace; `solvedesk functions` lists these");
  std::vector<AString> names;
  for (FunctionEntry const & function : functions)
    names.push_back(function.name);
  AString near;
  for (AString const & one : desktop::NearestNames(name, names))
    near += (near.empty() ? L"" : L", ") + one;
  throw Error(ErrorKind::kUsage, L"'" + name + L"' is no ranged function; " +
                                     (near.empty() ? AString() : L"did you mean " + near + L"? ") +
                                     L"`solvedesk functions` lists all");
}

std::string FunctionsAsText(std::vector<FunctionEntry> const & functions) {
  std::string text;
  for (std::size_t i = 0; i < functions.size();) {
    AString const category = functions[i].category;
    TextTable table(2);
    for (; i < functions.size() && functions[i].category == category; ++i)
      table.Add({Utf8(functions[i].name), Utf8(functions[i].description)});
    text += (text.empty() ? "" : "\n") + Utf8(category) + "\n" + table.Text("  ");
  }
  return text;
}

std::string FunctionAsText(FunctionEntry const & function) {
  std::string text = Utf8(function.name) + " (" + Utf8(function.category) + ")\n" + Utf8(function.description) + "\n";
  text += "\nof      " + InputOf(function.engine->input) + "\nresult  in " + function.result + "\n";
  if (function.parameters.empty())
    return text;
  TextTable table(3);
  for (ValueProp const & parameter : function.parameters)
    table.Add({Utf8(parameter.GetName()), Utf8(DefaultText(parameter)), Utf8(parameter.GetDescription())});
  return text + "\nparameters, their defaults and meaning:\n" + table.Text("  ");
}

nlohmann::ordered_json FunctionAsJson(FunctionEntry const & function) {
  nlohmann::ordered_json parameters = nlohmann::ordered_json::array();
  for (ValueProp const & parameter : function.parameters)
    parameters.push_back({{"name", Utf8(parameter.GetName())},
                          {"default", Utf8(DefaultText(parameter))},
                          {"si", parameter.GetValue().GetSIValue()},
                          {"description", Utf8(parameter.GetDescription())}});
  return {{"name", Utf8(function.name)},
          {"category", Utf8(function.category)},
          {"description", Utf8(function.description)},
          {"result", function.result},
          {"parameters", parameters}};
}

} // namespace solvedesk
