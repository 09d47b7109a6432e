// S-parameters held against each other.

#include "basekit/text/Utf8.h"
#include "products/rfcircuit/engine/compare/Compare.h"
#include "products/rfcircuit/product/RfCircuitProduct.h"
#include "products/rfcircuit/product/RfVariation.h"

#include <fmt/format.h>

#include <algorithm>

namespace rfcircuit {
namespace {

rf::SParameterTable TableOf(NetworkData const & data) {
  rf::SParameterTable table;
  table.frequencies = data.Frequencies();
  for (NetworkPort const & port : data.Ports())
    table.z0.push_back(port.z0);
  std::size_t const ports = data.Ports().size();
  table.matrices.assign(table.frequencies.size(), rf::SMatrix(ports));
  for (std::size_t i = 0; i < table.matrices.size(); ++i)
    for (std::size_t row = 0; row < ports; ++row)
      for (std::size_t column = 0; column < ports; ++column)
        table.matrices[i](row, column) = data.S(i, row, column);
  return table;
}

void AddMethod(rf::NetworkDifference const & difference, std::vector<AString> & method) {
  std::size_t const count = difference.differences.frequencies.size();
  auto const tell = [&method](std::string const & line) { method.push_back(text::FromUtf8(line)); };
  if (difference.interpolated == 0)
    tell("B has all frequencies that are compared; nothing is interpolated");
  else
    tell(fmt::format("B is interpolated linearly, real and imaginary part each for itself, at {} of {} frequencies",
                     difference.interpolated, count));
  if (difference.outsideRange > 0)
    tell(fmt::format("{} of A's frequencies {} outside the range of B and {} left out", difference.outsideRange,
                     difference.outsideRange == 1 ? "lies" : "lie", difference.outsideRange == 1 ? "is" : "are"));
  if (difference.isRenormalized)
    tell("port impedances differ: B is seen from those of A");
}

desktop::Comparison Described(rf::SParameterTable const & first, rf::NetworkDifference const & difference) {
  rf::SParameterTable const & table = difference.differences;
  desktop::Comparison comparison{L"Freq", L"Hz", table.frequencies, {}, difference.all.rms, {}};
  AddMethod(difference, comparison.method);
  for (std::size_t row = 0; row < table.Ports(); ++row)
    for (std::size_t column = 0; column < table.Ports(); ++column) {
      rf::DifferenceSummary const & summary = difference.parameters[row * table.Ports() + column];
      desktop::Comparison::Parameter parameter;
      parameter.name = AString::Format(L"S(%lu,%lu)", row + 1, column + 1);
      parameter.largest = summary.largest;
      parameter.rms = summary.rms;
      for (std::size_t i = 0; i < table.frequencies.size(); ++i) {
        // The frequencies that are compared are the first's own.
        auto const at = std::lower_bound(first.frequencies.begin(), first.frequencies.end(), table.frequencies[i]);
        std::complex<double> const own =
            first.matrices[static_cast<std::size_t>(at - first.frequencies.begin())](row, column);
        parameter.first.push_back(own);
        parameter.second.push_back(own - table.matrices[i](row, column));
        if (table.frequencies[i] == summary.frequency)
          parameter.largestAt = i;
      }
      comparison.parameters.push_back(std::move(parameter));
    }
  return comparison;
}

} // namespace

bool RfCircuitProduct::Compare(BaseSolutionVariation const & first, BaseSolutionVariation const & second,
                               desktop::Comparison & comparison, AString & error) const {
  auto const * const a = dynamic_cast<RfVariation const *>(&first);
  auto const * const b = dynamic_cast<RfVariation const *>(&second);
  if (!a || !b || !a->HasSolutionData() || !b->HasSolutionData()) {
    error = L"there are no S-parameters in memory to compare; load them first";
    return false;
  }
  try {
    rf::SParameterTable const table = TableOf(a->GetData());
    comparison = Described(table, rf::Compare(table, TableOf(b->GetData())));
    return true;
  } catch (rf::CompareError const & refused) {
    error = text::FromUtf8(refused.what());
    return false;
  }
}

} // namespace rfcircuit
