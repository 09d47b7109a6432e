#pragma once

#include "products/rfcircuit/product/quantity/INetworkQuantity.h"

#include <memory>
#include <vector>

namespace rfcircuit {

/// The report types of this product, by number: quantities over the frequencies of the sweep, and those over the
/// frequencies for which node voltages are stored.
constexpr unsigned kNetworkReportType = 1;
constexpr unsigned kVoltageReportType = 2;

/// All kinds of quantities, in the order in which people see them.
std::vector<std::unique_ptr<INetworkQuantity>> const & NetworkQuantities();

/// The kind that a text is a quantity of, without case; null when it is none.  `name` takes the text apart.
INetworkQuantity const * FindNetworkQuantity(AString const & text, NetworkLayout const & layout, QuantityName & name);

} // namespace rfcircuit
