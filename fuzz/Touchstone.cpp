// Touchstone texts from hostile bytes: read, or refused with an error that has a place; what is read is what the result
// promises, and reads the same once it is written.

#include "fuzz/Entry.h"

#include "products/rfcircuit/engine/touchstone/TouchstoneReader.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneWriter.h"

#include <cmath>
#include <cstdlib>

namespace {

void Require(bool holds) {
  if (!holds)
    std::abort();
}

void CheckTable(rf::SParameterTable const & table) {
  Require(!table.frequencies.empty() && table.frequencies.size() == table.matrices.size() && table.Ports() > 0);
  for (std::size_t k = 0; k < table.frequencies.size(); ++k) {
    Require(std::isfinite(table.frequencies[k]) && table.frequencies[k] >= 0);
    Require(k == 0 || table.frequencies[k] > table.frequencies[k - 1]);
    Require(table.matrices[k].Ports() == table.Ports());
  }
}

bool IsSame(rf::SParameterTable const & left, rf::SParameterTable const & right) {
  if (left.frequencies != right.frequencies || left.z0 != right.z0)
    return false;
  for (std::size_t k = 0; k < left.matrices.size(); ++k)
    for (std::size_t i = 0; i < left.Ports() * left.Ports(); ++i)
      if (left.matrices[k](i / left.Ports(), i % left.Ports()) != right.matrices[k](i / left.Ports(), i % left.Ports()))
        return false;
  return true;
}

// The writer refuses what is not finite, so this tells that too.
void CheckRoundTrip(rf::SParameterTable const & table) {
  std::vector<rf::Port> ports(table.Ports());
  for (std::size_t i = 0; i < ports.size(); ++i)
    ports[i].z0 = table.z0[i];
  auto const text = rf::TouchstoneText("x", {}, ports, table.frequencies, table.matrices,
                                       {rf::TouchstoneOptions::Format::RealImaginary, 17});
  Require(IsSame(rf::ReadTouchstoneText(text, "x", table.Ports()).network, table));
}

void Read(std::string_view text, std::string const & name) {
  try {
    auto const data = rf::ReadTouchstoneText(text, name);
    CheckTable(data.network);
    CheckRoundTrip(data.network);
  } catch (rf::TouchstoneSyntaxError const & error) {
    Require(error.Line() > 0 && error.Column() > 0 && !error.Message().empty() && !error.Expected().empty());
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
  std::string_view const text(reinterpret_cast<char const *>(data), size);
  for (char const * name : {"x.s1p", "x.s2p", "x.s3p", "x"})
    Read(text, name);
  return 0;
}
