// Touchstone files as imported data.

#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneReader.h"
#include "products/rfcircuit/product/NetlistSource.h"
#include "products/rfcircuit/product/NetworkData.h"
#include "products/rfcircuit/product/RfCircuitProduct.h"

#include <fmt/format.h>

#include <algorithm>

namespace rfcircuit {
namespace {

std::vector<NetworkPort> PortsOf(std::vector<double> const & z0) {
  std::vector<NetworkPort> ports;
  for (double const impedance : z0) {
    int const number = static_cast<int>(ports.size()) + 1;
    ports.push_back({number, AString::Format(L"%d", number), impedance});
  }
  return ports;
}

NetworkData DataOf(rf::SParameterTable const & network) {
  NetworkData data(network.frequencies, PortsOf(network.z0));
  for (std::size_t i = 0; i < network.matrices.size(); ++i)
    for (std::size_t row = 0; row < network.Ports(); ++row)
      for (std::size_t column = 0; column < network.Ports(); ++column)
        data.SetS(i, row, column, network.matrices[i](row, column));
  return data;
}

// What people are told of a file goes into one line.
AString NoteText(rf::TouchstoneNote const & note) {
  return text::FromUtf8(note.line > 0 ? fmt::format("line {}: {}", note.line, note.text) : note.text);
}

} // namespace

AString RfCircuitProduct::GetImportableFiles() const { return L"Touchstone files, which end in .s1p, .s2p and so on"; }

bool RfCircuitProduct::IsImportable(LongFileName const & file) const {
  return rf::PortsOfTouchstoneName(text::ToUtf8(file.NameAndExtension())).has_value();
}

bool RfCircuitProduct::ReadImport(LongFileName const & file, LongFileName const & source, desktop::ImportedData & data,
                                  AString & error) const {
  try {
    rf::TouchstoneData const read = rf::ReadTouchstone(std::filesystem::u8path(text::ToUtf8(file.FilePath())));
    data.file = file.FilePath();
    data.summary = text::FromUtf8(rf::Summary(read.network));
    std::transform(read.notes.begin(), read.notes.end(), std::back_inserter(data.notices), NoteText);
    if (auto const ports = CountPortsOfNetlist(source); ports && *ports != read.network.Ports())
      data.notices.push_back(
          text::FromUtf8(fmt::format("the file has {} {}, the circuit {}; they can't be compared", read.network.Ports(),
                                     read.network.Ports() == 1 ? "port" : "ports", *ports)));
    DataOf(read.network).Write(data.content);
    return true;
  } catch (rf::TouchstoneError const & refused) {
    error = text::FromUtf8(refused.what());
    return false;
  }
}

} // namespace rfcircuit
