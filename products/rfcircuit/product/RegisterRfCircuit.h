#pragma once

namespace rfcircuit {

/// Enters the product "rfcircuit" into the products of this process.
void RegisterRfCircuit();

} // namespace rfcircuit
