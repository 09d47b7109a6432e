#include "desktop/report/ComparisonDocument.h"

#include "desktop/page/Document.h"
#include "desktop/product/IComparisonProduct.h"

#include <algorithm>
#include <cmath>

namespace desktop {
namespace {

using Parameter = Comparison::Parameter;
using Values = std::vector<std::complex<double>>;

std::vector<double> Decibels(Values const & values) {
  std::vector<double> decibels;
  for (std::complex<double> const & value : values)
    decibels.push_back(20.0 * std::log10(std::abs(value)));
  return decibels;
}

std::vector<double> Magnitudes(Values const & first, Values const & second) {
  std::vector<double> magnitudes;
  for (std::size_t i = 0; i < std::min(first.size(), second.size()); ++i)
    magnitudes.push_back(std::abs(first[i] - second[i]));
  return magnitudes;
}

page::Table SummaryOf(Comparison const & comparison) {
  std::vector<AString> names;
  std::vector<double> largest;
  std::vector<double> places;
  std::vector<double> rms;
  for (Parameter const & parameter : comparison.parameters) {
    names.push_back(parameter.name);
    largest.push_back(parameter.largest);
    places.push_back(comparison.places[parameter.largestAt]);
    rms.push_back(parameter.rms);
  }
  return {L"Differences",
          {{L"Parameter", AString(), names, false},
           {L"Largest", AString(), largest, true},
           {L"At", comparison.unit, places, false},
           {L"RMS", AString(), rms, false}}};
}

page::RectangularPlot PlotOfBoth(Comparison const & comparison, AString const & first, AString const & second) {
  page::RectangularPlot plot{
      L"Magnitudes", {comparison.axis, comparison.unit, false}, {L"Magnitude", L"dB", false}, {}, {}};
  for (Parameter const & parameter : comparison.parameters) {
    plot.series.push_back({parameter.name + L", " + first, AString(), comparison.places, Decibels(parameter.first)});
    plot.series.push_back({parameter.name + L", " + second, AString(), comparison.places, Decibels(parameter.second)});
  }
  return plot;
}

page::RectangularPlot PlotOfDifferences(Comparison const & comparison) {
  page::RectangularPlot plot{L"Magnitudes of the differences",
                             {comparison.axis, comparison.unit, false},
                             {L"|Difference|", AString(), false},
                             {},
                             {}};
  for (Parameter const & parameter : comparison.parameters)
    plot.series.push_back(
        {parameter.name, AString(), comparison.places, Magnitudes(parameter.first, parameter.second)});
  return plot;
}

} // namespace

page::Document ComparisonDocument(Comparison const & comparison, AString const & first, AString const & second) {
  AString method;
  for (AString const & line : comparison.method)
    method += line + L". ";
  page::Section section{L"Comparison", method.Trimmed(), {}};
  section.items.push_back(SummaryOf(comparison));
  section.items.push_back(PlotOfBoth(comparison, first, second));
  section.items.push_back(PlotOfDifferences(comparison));
  return {first + L" minus " + second, AString(), {section}};
}

} // namespace desktop
