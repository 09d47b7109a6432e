#include "products/rfcircuit/product/NetworkQuantities.h"

#include "products/rfcircuit/product/NetworkData.h"

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
  quantities.push_back({kFrequency, L"Hz", AString(), false, data.Frequencies()});
  std::size_t const ports = data.Ports().size();
  for (std::size_t row = 0; row < ports; ++row)
    for (std::size_t column = 0; column < ports; ++column) {
      std::vector<double> real;
      std::vector<double> imaginary;
      for (std::size_t i = 0; i < data.Frequencies().size(); ++i) {
        real.push_back(data.S(i, row, column).real());
        imaginary.push_back(data.S(i, row, column).imag());
      }
      AString const name = NameOf(ports, row, column);
      quantities.push_back({name + L".re", AString(), kFrequency, false, std::move(real)});
      quantities.push_back({name + L".im", AString(), kFrequency, false, std::move(imaginary)});
    }
  return quantities;
}

} // namespace rfcircuit
