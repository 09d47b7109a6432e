#include "apps/solvedesk/transfer/ComparisonText.h"

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/TextTable.h"
#include "desktop/product/IComparisonProduct.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>

namespace solvedesk {
namespace {

using desktop::Comparison;
using Json = nlohmann::ordered_json;
using Parameter = Comparison::Parameter;

double Decibels(std::complex<double> const & value) { return 20.0 * std::log10(std::abs(value)); }

// Behind the place: A, B, the magnitude of their difference.
std::vector<double> RowOf(Parameter const & parameter, std::size_t place) {
  std::complex<double> const a = parameter.first[place];
  std::complex<double> const b = parameter.second[place];
  return {Decibels(a), a.real(), a.imag(), Decibels(b), b.real(), b.imag(), std::abs(a - b)};
}

std::string NumbersOf(Comparison const & comparison, Parameter const & parameter) {
  TextTable table;
  table.Add({Utf8(comparison.axis) + " [" + Utf8(comparison.unit) + "]", "A [dB]", "A.re", "A.im", "B [dB]", "B.re",
             "B.im", "|A-B|"});
  for (std::size_t i = 0; i < comparison.places.size(); ++i) {
    std::vector<std::string> row{fmt::format("{}", comparison.places[i])};
    for (double const number : RowOf(parameter, i))
      row.push_back(fmt::format("{:.6g}", number));
    table.Add(row);
  }
  return "\n" + Utf8(parameter.name) + "\n" + table.Text("  ");
}

Parameter const & Worst(Comparison const & comparison) {
  return *std::max_element(comparison.parameters.begin(), comparison.parameters.end(),
                           [](Parameter const & a, Parameter const & b) { return a.largest < b.largest; });
}

// Of those that are told, which may not be all.
double TotalRms(Comparison const & comparison) {
  double squares = 0.0;
  for (Parameter const & parameter : comparison.parameters)
    squares += parameter.rms * parameter.rms;
  return std::sqrt(squares / static_cast<double>(comparison.parameters.size()));
}

Json PartsOf(std::vector<std::complex<double>> const & values) {
  Json real = Json::array();
  Json imaginary = Json::array();
  Json decibels = Json::array();
  for (std::complex<double> const & value : values) {
    real.push_back(value.real());
    imaginary.push_back(value.imag());
    double const level = Decibels(value);
    decibels.push_back(std::isfinite(level) ? Json(level) : Json());
  }
  return {{"re", real}, {"im", imaginary}, {"db", decibels}};
}

Json JsonOf(Comparison const & comparison, Parameter const & parameter) {
  Json difference = Json::array();
  for (std::size_t i = 0; i < comparison.places.size(); ++i)
    difference.push_back(std::abs(parameter.first[i] - parameter.second[i]));
  return {
      {"name", Utf8(parameter.name)}, {"largest", parameter.largest},  {"at", comparison.places[parameter.largestAt]},
      {"rms", parameter.rms},         {"a", PartsOf(parameter.first)}, {"b", PartsOf(parameter.second)},
      {"difference", difference}};
}

} // namespace

std::string ComparisonAsText(Comparison const & comparison, std::string const & first, std::string const & second,
                             bool hasNumbers) {
  std::string text = fmt::format("A  {}\nB  {}\n", first, second);
  text += fmt::format("{} from {} to {} {}\n", Count(static_cast<long long>(comparison.places.size()), "sample"),
                      comparison.places.front(), comparison.places.back(), Utf8(comparison.unit));
  for (AString const & line : comparison.method)
    text += Utf8(line) + "\n";
  TextTable table(1);
  table.Add({"parameter", "largest |A-B|", "at [" + Utf8(comparison.unit) + "]", "rms"});
  for (Parameter const & parameter : comparison.parameters)
    table.Add({Utf8(parameter.name), fmt::format("{:.6g}", parameter.largest),
               fmt::format("{}", comparison.places[parameter.largestAt]), fmt::format("{:.6g}", parameter.rms)});
  Parameter const & worst = Worst(comparison);
  table.Add({"all", fmt::format("{:.6g}", worst.largest), fmt::format("{}", comparison.places[worst.largestAt]),
             fmt::format("{:.6g}", TotalRms(comparison))});
  text += table.Text(std::string());
  if (hasNumbers)
    for (Parameter const & parameter : comparison.parameters)
      text += NumbersOf(comparison, parameter);
  return text;
}

std::string ComparisonAsCsv(Comparison const & comparison) {
  std::string text = fmt::format("parameter,{} [{}],A [dB],A.re,A.im,B [dB],B.re,B.im,|A-B|\n", Utf8(comparison.axis),
                                 Utf8(comparison.unit));
  for (Parameter const & parameter : comparison.parameters)
    for (std::size_t i = 0; i < comparison.places.size(); ++i) {
      text += fmt::format("\"{}\",{}", Utf8(parameter.name), comparison.places[i]); // Names hold commas.
      for (double const number : RowOf(parameter, i))
        text += fmt::format(",{}", number);
      text += '\n';
    }
  return text;
}

Json ComparisonAsJson(Comparison const & comparison, std::string const & first, std::string const & second) {
  Json method = Json::array();
  for (AString const & line : comparison.method)
    method.push_back(Utf8(line));
  Json parameters = Json::array();
  for (Parameter const & parameter : comparison.parameters)
    parameters.push_back(JsonOf(comparison, parameter));
  Parameter const & worst = Worst(comparison);
  return {{"a", first},
          {"b", second},
          {"method", method},
          {"axis", Utf8(comparison.axis)},
          {"unit", Utf8(comparison.unit)},
          {"places", comparison.places},
          {"summary",
           {{"parameter", Utf8(worst.name)},
            {"largest", worst.largest},
            {"at", comparison.places[worst.largestAt]},
            {"rms", TotalRms(comparison)}}},
          {"parameters", parameters}};
}

} // namespace solvedesk
