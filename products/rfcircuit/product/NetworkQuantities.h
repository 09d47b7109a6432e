#pragma once

#include "desktop/product/IQuantityProduct.h"

namespace rfcircuit {

class NetworkData;

/// The S-parameters as runs of numbers over "Freq": "S21.re" and "S21.im", row by row; from ten ports on "S(10,2).re".
std::vector<desktop::QuantityValues> QuantitiesOf(NetworkData const & data);

} // namespace rfcircuit
