#include "products/rfcircuit/product/TouchstoneExport.h"

#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneWriter.h"
#include "products/rfcircuit/product/RfVariation.h"
#include "solutionmanager/model/BaseSolution.h"

#include <fmt/format.h>

#include <filesystem>

namespace rfcircuit {
namespace {

// The first port whose reference is not that of port 1 decides; empty when all agree.
std::string DifferingPorts(NetworkData const & data) {
  NetworkPort const & first = data.Ports().front();
  for (NetworkPort const & port : data.Ports())
    if (port.z0 != first.z0)
      return fmt::format("port {} ({}) has {} ohm and port {} ({}) has {} ohm", first.number, text::ToUtf8(first.name),
                         first.z0, port.number, text::ToUtf8(port.name), port.z0);
  return std::string();
}

std::vector<std::string> Header(RfVariation const & variation) {
  std::string ports = "Ports:";
  for (NetworkPort const & port : variation.GetData().Ports())
    ports += fmt::format(" {} = {}", port.number, text::ToUtf8(port.name)) +
             (&port == &variation.GetData().Ports().back() ? "" : ",");
  std::vector<std::string> header{"Written by rfcircuit " RFCIRCUIT_VERSION,
                                  "Solution: " + text::ToUtf8(variation.GetBaseSolution()->GetGlobalSolutionName()),
                                  "Variation: " + text::ToUtf8(variation.GetDesignVariationKey()), ports};
  if (auto const & origin = variation.GetData().Origin())
    header.push_back(
        fmt::format("Adaptive sweep: {} of {} points solved, the others fitted; largest change {:.2g}, target "
                    "{:.2g}, {}",
                    origin->solved.size(), variation.GetData().Frequencies().size(), origin->change, origin->target,
                    origin->isConverged ? "converged" : "NOT converged"));
  return header;
}

std::vector<rf::Port> EnginePorts(NetworkData const & data) {
  std::vector<rf::Port> ports;
  for (NetworkPort const & port : data.Ports())
    ports.push_back({port.number, text::ToUtf8(port.name), port.z0, 0});
  return ports;
}

std::vector<rf::SMatrix> Matrices(NetworkData const & data) {
  std::size_t const ports = data.Ports().size();
  std::vector<rf::SMatrix> matrices(data.Frequencies().size(), rf::SMatrix(ports));
  for (std::size_t i = 0; i < matrices.size(); ++i)
    for (std::size_t row = 0; row < ports; ++row)
      for (std::size_t column = 0; column < ports; ++column)
        matrices[i](row, column) = data.S(i, row, column);
  return matrices;
}

} // namespace

bool ExportTouchstone(RfVariation const & variation, LongFileName const & fileWithoutExtension, int digits,
                      LongFileName & written, AString & error) {
  NetworkData const & data = variation.GetData();
  std::string const path = text::ToUtf8(fileWithoutExtension.FilePath()) + rf::TouchstoneExtension(data.Ports().size());
  if (std::string const differing = DifferingPorts(data); !differing.empty()) {
    // The file's name alone: its folder may be one that files are gathered in before they go where they are wanted.
    error = text::FromUtf8(std::filesystem::path(path).filename().string() +
                           ": a Touchstone file of version 1 holds one reference impedance for all ports, but " +
                           differing + "; give all ports of the netlist the same z0");
    return false;
  }
  rf::TouchstoneOptions options;
  options.digits = digits;
  try {
    written = LongFileName();
    rf::WriteTouchstone(path, Header(variation), EnginePorts(data), data.Frequencies(), Matrices(data), options);
  } catch (rf::TouchstoneFileError const & refused) {
    written = LongFileName(text::FromUtf8(path));
    error = text::FromUtf8(refused.what());
    return false;
  } catch (rf::TouchstoneError const & refused) {
    error = text::FromUtf8(refused.what());
    return false;
  }
  written = LongFileName(text::FromUtf8(path));
  return true;
}

} // namespace rfcircuit
