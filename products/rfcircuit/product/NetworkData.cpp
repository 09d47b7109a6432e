#include "products/rfcircuit/product/NetworkData.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/io/CQuery_ok_manip.h"

#include <cmath>
#include <utility>

namespace rfcircuit {
namespace {

wchar_t const * const kFrequencies = L"Frequencies";
wchar_t const * const kPorts = L"Ports";
wchar_t const * const kPort = L"Port";
wchar_t const * const kNumber = L"Number";
wchar_t const * const kName = L"Name";
wchar_t const * const kImpedance = L"Z0";
wchar_t const * const kValues = L"S";
wchar_t const * const kAdaptive = L"Adaptive";
wchar_t const * const kPasses = L"Passes";
wchar_t const * const kTarget = L"Target";
wchar_t const * const kChange = L"Change";
wchar_t const * const kConverged = L"Converged";
wchar_t const * const kSolved = L"Solved";

void WriteRun(io::CBlock & block, wchar_t const * name, std::vector<double> values) {
  io::CBlockFuncPtr const item(name);
  item->AppendRun(std::move(values));
  block << item;
}

// False when there is no such item, or when it holds anything but finite numbers.
bool ReadRun(io::CBlock const & block, wchar_t const * name, std::vector<double> & values) {
  auto const * const item = static_cast<io::CBlock_func *>(block.FindItem(name, io::CBlock_item::Kind::Func));
  if (!item)
    return false;
  io::CBlock_func::iterator place = item->begin();
  values.clear();
  item->QueryUnamedValues(place, values);
  if (place != item->end())
    return false;
  for (double const value : values)
    if (!std::isfinite(value))
      return false;
  return true;
}

} // namespace

NetworkData::NetworkData(std::vector<double> frequencies, std::vector<NetworkPort> ports)
    : m_frequencies(std::move(frequencies)), m_ports(std::move(ports)),
      m_values(m_frequencies.size() * m_ports.size() * m_ports.size() * 2) {}

std::size_t NetworkData::At(std::size_t frequency, std::size_t row, std::size_t column) const {
  return ((frequency * m_ports.size() + row) * m_ports.size() + column) * 2;
}

std::complex<double> NetworkData::S(std::size_t frequency, std::size_t row, std::size_t column) const {
  std::size_t const at = At(frequency, row, column);
  return {m_values[at], m_values[at + 1]};
}

void NetworkData::SetS(std::size_t frequency, std::size_t row, std::size_t column, std::complex<double> value) {
  std::size_t const at = At(frequency, row, column);
  m_values[at] = value.real();
  m_values[at + 1] = value.imag();
}

void NetworkData::Write(io::CBlock & block) const {
  WriteRun(block, kFrequencies, m_frequencies);
  io::CBlock ports(kPorts);
  for (NetworkPort const & port : m_ports) {
    io::CBlock_func item(kPort);
    item << io::named(kNumber, port.number) << io::named(kName, port.name) << io::named(kImpedance, port.z0);
    ports << item;
  }
  block << ports;
  WriteRun(block, kValues, m_values);
  if (!m_origin)
    return;
  io::CBlock_func adaptive(kAdaptive);
  adaptive << io::named(kPasses, m_origin->passes) << io::named(kTarget, m_origin->target)
           << io::named(kChange, m_origin->change) << io::named(kConverged, m_origin->isConverged);
  block << adaptive;
  WriteRun(block, kSolved, std::vector<double>(m_origin->solved.begin(), m_origin->solved.end()));
}

bool NetworkData::Read(io::CBlock const & block) {
  bool const fits = ReadRun(block, kFrequencies, m_frequencies) && ReadPorts(block) &&
                    ReadRun(block, kValues, m_values) && IsConsistent() && ReadOrigin(block);
  if (!fits)
    *this = NetworkData();
  return fits;
}

bool NetworkData::ReadPorts(io::CBlock const & block) {
  io::CBlock const * const ports = block.FindBlock(kPorts);
  if (!ports)
    return false;
  m_ports.clear();
  for (auto const & child : *ports) {
    io::CBlock_ptr<io::CBlock_func> const item(child);
    NetworkPort port;
    bool hasNumber = false;
    bool hasName = false;
    bool hasImpedance = false;
    if (!item || !AString::MatchNoCase(item->Name(), kPort))
      return false;
    *item >> io::named(kNumber, port.number) >> io::CQuery_ok_manip(hasNumber) >> io::named(kName, port.name) >>
        io::CQuery_ok_manip(hasName) >> io::named(kImpedance, port.z0) >> io::CQuery_ok_manip(hasImpedance);
    if (!hasNumber || !hasName || !hasImpedance)
      return false;
    m_ports.push_back(port);
  }
  return true;
}

bool NetworkData::ReadOrigin(io::CBlock const & block) {
  m_origin.reset();
  auto const * const item = static_cast<io::CBlock_func *>(block.FindItem(kAdaptive, io::CBlock_item::Kind::Func));
  if (!item)
    return true;
  AdaptiveOrigin origin;
  bool isTold[4] = {};
  *item >> io::named(kPasses, origin.passes) >> io::CQuery_ok_manip(isTold[0]) >> io::named(kTarget, origin.target) >>
      io::CQuery_ok_manip(isTold[1]) >> io::named(kChange, origin.change) >> io::CQuery_ok_manip(isTold[2]) >>
      io::named(kConverged, origin.isConverged) >> io::CQuery_ok_manip(isTold[3]);
  std::vector<double> solved;
  if (!isTold[0] || !isTold[1] || !isTold[2] || !isTold[3] || !ReadRun(block, kSolved, solved))
    return false;
  double least = 0.0;
  for (double const number : solved) {
    if (number < least || number != std::floor(number) || number >= static_cast<double>(m_frequencies.size()))
      return false;
    origin.solved.push_back(static_cast<std::size_t>(number));
    least = number + 1.0;
  }
  m_origin = std::move(origin);
  return true;
}

bool NetworkData::IsConsistent() const {
  if (m_frequencies.empty() || m_ports.empty())
    return false;
  for (std::size_t i = 0; i < m_frequencies.size(); ++i)
    if (m_frequencies[i] < 0.0 || (i > 0 && m_frequencies[i] <= m_frequencies[i - 1]))
      return false;
  for (std::size_t i = 0; i < m_ports.size(); ++i)
    if (m_ports[i].number != static_cast<int>(i) + 1 || !(m_ports[i].z0 > 0.0) || !std::isfinite(m_ports[i].z0))
      return false;
  // Divided, since the product of two counts of a hostile block might wrap.
  std::size_t const perFrequency = m_ports.size() * m_ports.size() * 2;
  return m_values.size() / perFrequency == m_frequencies.size() && m_values.size() % perFrequency == 0;
}

} // namespace rfcircuit
