#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/Verbs.h"
#include "apps/solvedesk/report/FunctionCatalogue.h"
#include "apps/solvedesk/report/TraceFile.h"
#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/ranged/RangedFunction.h"
#include "basekit/value/units/QuantityText.h"
#include "desktop/Error.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <cmath>
#include <optional>

namespace solvedesk {
namespace {

using desktop::Error;
using desktop::ErrorKind;

struct FunctionsWords {
  std::string name;
  std::optional<std::string> category;
  std::optional<std::string> csv;
  std::vector<std::string> parameters;
  OutputOptions output;
};

AString ParameterNames(FunctionEntry const & function) {
  AString names;
  for (ValueProp const & parameter : function.parameters)
    names += (names.empty() ? L"'" : L", '") + parameter.GetName() + L"'";
  return names;
}

/// In SI units or that of the parameter, into which a quantity that bears a unit is converted.
double ParameterNumber(val::RangedParameter const & parameter, AString const & text, AString const & where) {
  val::Quantity quantity;
  if (!val::ParseQuantity(text.View(), quantity) || quantity.isComplex)
    throw Error(ErrorKind::kUsage, where + L": '" + text + L"' is no real number; give one such as 0.5, 2e-9 or 2ns");
  if (val::IsMetreOrThousandth(text.View()))
    throw Error(ErrorKind::kUsage, where + L": '" + text + L"' " + AmbiguousMetre(text));
  bool const isSameKind = Units::GetUnitType(quantity.unit) == Units::GetUnitType(parameter.unit);
  return isSameKind ? Units::FromSI(quantity.real, parameter.unit) : quantity.real;
}

/// All of them in order: those that are told, the others by their defaults.
std::vector<double> ParametersOf(FunctionEntry const & function, std::vector<std::string> const & words) {
  val::RangedFunction const & engine = *function.engine;
  std::vector<std::optional<double>> told(engine.parameters.size());
  for (std::string const & word : words) {
    AString const text = ArgumentText(word);
    std::size_t const equals = text.find(L'=');
    AString const name = text.substr(0, equals).Trimmed();
    AString const where = L"--param " + name;
    int const place = FindRangedParameter(engine, name.View());
    if (place < 0)
      throw Error(ErrorKind::kUsage,
                  where + L": " + function.name +
                      (told.empty() ? AString(L" takes no parameters")
                                    : L" has no such parameter; it has " + ParameterNames(function)));
    if (equals == AString::npos)
      throw Error(ErrorKind::kUsage, where + L": give it a value, as in --param \"" + name + L"=0.5\"");
    std::optional<double> & number = told[static_cast<std::size_t>(place)];
    if (number)
      throw Error(ErrorKind::kUsage, where + L": is given twice; give it once");
    number =
        ParameterNumber(engine.parameters[static_cast<std::size_t>(place)], text.substr(equals + 1).Trimmed(), where);
  }
  std::vector<double> parameters;
  for (std::size_t i = 0; i < told.size(); ++i)
    parameters.push_back(told[i].value_or(engine.parameters[i].defaultValue));
  return parameters;
}

nlohmann::ordered_json ValueAsJson(FunctionEntry const & function, TraceColumns const & columns,
                                   val::RangedTrace const & trace, std::vector<double> const & parameters,
                                   double value) {
  nlohmann::ordered_json told = nlohmann::ordered_json::object();
  for (std::size_t i = 0; i < parameters.size(); ++i)
    told[Utf8(function.parameters[i].GetName())] = parameters[i];
  nlohmann::ordered_json document{{"function", Utf8(function.name)}, {"value", nullptr},
                                  {"result", function.result},       {"parameters", told},
                                  {"samples", trace.Count()},        {"holes", columns.Rows() - trace.Count()}};
  if (!std::isnan(value))
    document["value"] = value;
  return document;
}

/// A parameter that nobody gave is why most functions have no value.
void TellDefaults(FunctionEntry const & function, std::vector<double> const & parameters) {
  AString defaults;
  for (std::size_t i = 0; i < parameters.size(); ++i)
    if (parameters[i] == function.engine->parameters[i].defaultValue)
      defaults += (defaults.empty() ? L"'" : L", '") + function.parameters[i].GetName() + L"' " +
                  AString(text::RealText(parameters[i], 'g', -1));
  if (!defaults.empty())
    PrintMessage("no value with the defaults " + Utf8(defaults) + "; --param gives others, `solvedesk functions " +
                 Utf8(function.name) + "` explains them");
}

int ApplyFunction(FunctionsWords const & words, FunctionEntry const & function) {
  std::vector<double> const parameters = ParametersOf(function, words.parameters);
  AString const path = ArgumentText(*words.csv);
  TraceColumns const columns = ReadTraceFile(path);
  val::RangedTrace const trace =
      columns.complex.empty() ? val::RangedTrace(columns.x, columns.y) : val::RangedTrace(columns.x, columns.complex);
  double const value = val::Measure(*function.engine, trace, parameters);
  if (columns.backwards != 0)
    PrintMessage(Utf8(path) + ":" + std::to_string(columns.backwards) +
                 ": x steps back, and nothing can be said of such a trace; sort the lines by x");
  else if (std::isnan(value))
    TellDefaults(function, parameters);
  PrintResult(words.output, std::isnan(value) ? "no value\n" : text::ShortestReal(value) + "\n",
              ValueAsJson(function, columns, trace, parameters, value));
  return 0;
}

int ExplainFunction(FunctionsWords const & words, FunctionEntry const & function) {
  PrintResult(words.output, FunctionAsText(function), FunctionAsJson(function));
  return 0;
}

int PrintFunctions(FunctionsWords const & words) {
  std::vector<FunctionEntry> const functions =
      words.category ? FunctionsOfCategory(ArgumentText(*words.category)) : ListFunctions();
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (FunctionEntry const & function : functions)
    list.push_back(FunctionAsJson(function));
  PrintResult(words.output, FunctionsAsText(functions), {{"functions", list}});
  return 0;
}

int ShowFunctions(FunctionsWords const & words) {
  if (!words.csv && !words.parameters.empty())
    throw Error(ErrorKind::kUsage, L"--param: says nothing without --csv FILE, the trace to measure");
  if (words.name.empty() && words.csv)
    throw Error(ErrorKind::kUsage, L"--csv: name the function to apply, as in solvedesk functions max --csv FILE");
  if (words.name.empty())
    return PrintFunctions(words);
  if (words.category)
    throw Error(ErrorKind::kUsage, L"--category: lists functions; leave it out where one is named");
  FunctionEntry const function = FindFunction(ArgumentText(words.name));
  return words.csv ? ApplyFunction(words, function) : ExplainFunction(words, function);
}

} // namespace

void AddFunctionsVerb(CLI::App & program, Action & action) {
  auto const words = std::make_shared<FunctionsWords>();
  CLI::App * const verb =
      program.add_subcommand("functions", "list the ranged functions, or apply one to the columns of a file");
  verb->add_option("NAME", words->name, "a function; without --csv it is explained");
  verb->add_option("--category", words->category, "list one category alone, such as 'Pulse Width'");
  verb->add_option("--csv", words->csv, "a file of comma-separated columns x,y or x,re,im, x ascending");
  verb->add_option("--param", words->parameters, "a parameter as \"Name=value\", units allowed; may be given again")
      ->allow_extra_args(false);
  AddOutputOptions(*verb, words->output);
  verb->footer("Examples:\n"
               "  solvedesk functions --category Period\n"
               "  solvedesk functions risetime\n"
               "  solvedesk functions risetime --csv step.csv --param Target=1.8\n"
               "  solvedesk functions EyeWidth --csv bits.csv --param \"Unit Interval=0.4ns\" --json\n\n"
               "The first line of the file may name the columns; nan marks a hole.  Numbers with a unit, 2ns, become\n"
               "SI; units in the names of columns are not read.  A function that has nothing to say of a trace gives\n"
               "'no value', in JSON null.");
  verb->callback([&action, words] { action = [words] { return ShowFunctions(*words); }; });
}

} // namespace solvedesk
