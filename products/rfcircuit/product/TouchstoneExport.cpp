#include "products/rfcircuit/product/TouchstoneExport.h"

#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "products/rfcircuit/engine/network/Renormalize.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneWriter.h"
#include "products/rfcircuit/product/RfVariation.h"
#include "solutionmanager/model/BaseSolution.h"

#include <fmt/format.h>

#include <algorithm>

namespace rfcircuit {
namespace {

// Of one pass alone nothing is known of a change.
std::string ChangeText(AdaptiveOrigin const & origin) {
  return origin.change == 0.0 && !origin.isConverged ? "unknown" : fmt::format("{:.2g}", origin.change);
}

std::vector<std::string> Header(NetworkData const & data, TouchstoneLabels const & labels) {
  std::string ports = "Ports:";
  std::string impedances;
  for (NetworkPort const & port : data.Ports()) {
    char const * const comma = &port == &data.Ports().back() ? "" : ",";
    ports += fmt::format(" {} = {}{}", port.number, text::ToUtf8(port.name), comma);
    impedances += fmt::format(" {} = {}{}", port.number, port.z0, comma);
  }
  std::vector<std::string> header{"Written by rfcircuit " RFCIRCUIT_VERSION,
                                  "Solution: " + text::ToUtf8(labels.solution),
                                  "Variation: " + text::ToUtf8(labels.variation), ports};
  if (auto const & origin = data.Origin())
    header.push_back(
        fmt::format("Adaptive sweep: {} of {} points solved, the others fitted; largest change {}, target {:.2g}, {}",
                    origin->solved.size(), data.Frequencies().size(), ChangeText(*origin), origin->target,
                    origin->isConverged ? "converged" : "NOT converged"));
  if (IsRenormalizing(data, labels))
    header.push_back("Renormalized; the ports' own impedances in ohm:" + impedances);
  return header;
}

std::vector<rf::Port> EnginePorts(NetworkData const & data, std::optional<double> z0) {
  std::vector<rf::Port> ports;
  for (NetworkPort const & port : data.Ports())
    ports.push_back({port.number, text::ToUtf8(port.name), z0.value_or(port.z0), 0});
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

void Renormalize(NetworkData const & data, double z0, std::vector<rf::SMatrix> & matrices) {
  std::vector<double> from;
  for (NetworkPort const & port : data.Ports())
    from.push_back(port.z0);
  for (std::size_t i = 0; i < matrices.size(); ++i) {
    auto const seen = rf::Renormalized(matrices[i], from, z0);
    if (!seen)
      throw rf::TouchstoneError(fmt::format("Touchstone file: at {} Hz there are no S-parameters for {} ohm; give "
                                            "another z0",
                                            data.Frequencies()[i], z0));
    matrices[i] = *seen;
  }
}

// Throws rf::TouchstoneError; `name` is whom it is about.
std::string TextOf(std::string const & name, NetworkData const & data, TouchstoneLabels const & labels) {
  std::vector<rf::SMatrix> matrices = Matrices(data);
  if (IsRenormalizing(data, labels))
    Renormalize(data, *labels.z0, matrices);
  rf::TouchstoneOptions options;
  options.digits = labels.digits;
  return rf::TouchstoneText(name, Header(data, labels), EnginePorts(data, labels.z0), data.Frequencies(), matrices,
                            options);
}

} // namespace

bool IsRenormalizing(NetworkData const & data, TouchstoneLabels const & labels) {
  return labels.z0 && std::any_of(data.Ports().begin(), data.Ports().end(),
                                  [&](NetworkPort const & port) { return port.z0 != *labels.z0; });
}

AString TouchstoneExtension(NetworkData const & data) {
  return text::FromUtf8(rf::TouchstoneExtension(data.Ports().size()));
}

bool MakeTouchstoneText(NetworkData const & data, TouchstoneLabels const & labels, std::string & text,
                        AString & error) {
  try {
    text = TextOf("Touchstone file", data, labels);
    return true;
  } catch (rf::TouchstoneError const & refused) {
    error = text::FromUtf8(refused.what());
    return false;
  }
}

bool ExportTouchstone(RfVariation const & variation, LongFileName const & fileWithoutExtension, int digits,
                      LongFileName & written, AString & error) {
  NetworkData const & data = variation.GetData();
  std::string const path = text::ToUtf8(fileWithoutExtension.FilePath()) + rf::TouchstoneExtension(data.Ports().size());
  written = LongFileName();
  try {
    TouchstoneLabels const labels{variation.GetBaseSolution()->GetGlobalSolutionName(),
                                  variation.GetDesignVariationKey(), digits};
    rf::WriteTouchstoneText(path, TextOf(path, data, labels));
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
