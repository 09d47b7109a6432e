// Netlists from hostile bytes: read, elaborated, or refused with an error; nothing else.

#include "fuzz/Entry.h"

#include "products/rfcircuit/engine/netlist/Elaborate.h"
#include "products/rfcircuit/engine/netlist/Netlist.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"

#include <string>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
  try {
    auto const netlist = rf::ReadNetlistText(std::string(reinterpret_cast<char const *>(data), size), "input.cir");
    netlist.Sweeps();
    rf::Elaborate(netlist);
  } catch (rf::NetlistError const &) {
  }
  return 0;
}
