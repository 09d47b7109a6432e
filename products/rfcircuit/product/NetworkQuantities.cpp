#include "products/rfcircuit/product/NetworkQuantities.h"

#include "products/rfcircuit/product/NetworkData.h"
#include "products/rfcircuit/product/quantity/NetworkView.h"

#include <utility>

namespace rfcircuit {
namespace {

wchar_t const * const kFrequency = L"Freq";

AString NameOf(std::size_t ports, std::size_t row, std::size_t column) {
  return AString::Format(ports < 10 ? L"S%lu%lu" : L"S(%lu,%lu)", row + 1, column + 1);
}

} // namespace

std::vector<desktop::QuantityValues> QuantitiesOf(NetworkData const & data) {
  std::vector<desktop::QuantityValues> quantities;
  if (data.IsEmpty())
    return quantities;
  NetworkView view(data, PortConditions());
  quantities.push_back({kFrequency, L"Hz", AString(), false, view.Frequencies()});
  std::size_t const ports = view.CountPorts();
  for (std::size_t row = 0; row < ports; ++row)
    for (std::size_t column = 0; column < ports; ++column) {
      std::vector<double> real;
      std::vector<double> imaginary;
      for (std::complex<double> const & number : view.S(row, column)) {
        real.push_back(number.real());
        imaginary.push_back(number.imag());
      }
      AString const name = NameOf(ports, row, column);
      quantities.push_back({name + L".re", AString(), kFrequency, false, std::move(real)});
      quantities.push_back({name + L".im", AString(), kFrequency, false, std::move(imaginary)});
    }
  return quantities;
}

} // namespace rfcircuit
