#include "products/rfcircuit/product/TouchstoneExport.h"

#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneWriter.h"
#include "products/rfcircuit/product/RfVariation.h"
#include "solutionmanager/model/BaseSolution.h"

#include <fmt/format.h>

namespace rfcircuit {
namespace {

// Of one pass alone nothing is known of a change.
std::string ChangeText(AdaptiveOrigin const & origin) {
  return origin.change == 0.0 && !origin.isConverged ? "unknown" : fmt::format("{:.2g}", origin.change);
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
        fmt::format("Adaptive sweep: {} of {} points solved, the others fitted; largest change {}, target {:.2g}, {}",
                    origin->solved.size(), variation.GetData().Frequencies().size(), ChangeText(*origin),
                    origin->target, origin->isConverged ? "converged" : "NOT converged"));
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
