#include "plotkit/simvalue/PortSettings.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"

namespace {

wchar_t const * const kDeembeddingDistance = L"DeembeddingDistance";
wchar_t const * const kImpedance = L"Impedance";
wchar_t const * const kRenormalization = L"Renormalization";

/// Name(real, imaginary); an absent item clears the value.
io::ReadError ReadComplex(io::CBlock const & block, wchar_t const * name, ComplexValue & value) {
  value.ClearValue();
  io::CBlock_func func{AString(name)};
  block >> func;
  if (!block.Found())
    return io::kNoError;
  double real = 0.0;
  double imaginary = 0.0;
  auto place = func.begin();
  if (!func.QueryUnamedValues(place, real) || !func.QueryUnamedValues(place, imaginary))
    return io::kBadContent;
  value.SetValue({real, imaginary});
  return io::kNoError;
}

void WriteComplex(io::CBlock & block, wchar_t const * name, ComplexValue const & value) {
  if (!value.HasValue())
    return;
  io::CBlock_func func{AString(name)};
  func << value.GetValue().real() << value.GetValue().imag();
  block << func;
}

} // namespace

io::ReadError PortSettings::DoDataExchange(io::CBlock & block, bool reading) {
  if (reading)
    return ReadFrom(block);
  WriteTo(block);
  return io::kNoError;
}

io::ReadError PortSettings::ReadFrom(io::CBlock const & block) {
  m_deembeddingDist.ClearValue();
  double distance = 0.0;
  block >> io::named(kDeembeddingDistance, distance);
  if (block.Found())
    m_deembeddingDist.SetValue(distance);
  io::CReadError result = ReadComplex(block, kImpedance, m_impedance);
  result += ReadComplex(block, kRenormalization, m_renormalization);
  return result;
}

void PortSettings::WriteTo(io::CBlock & block) const {
  if (m_deembeddingDist.HasValue())
    block << io::named(kDeembeddingDistance, m_deembeddingDist.GetValue());
  WriteComplex(block, kImpedance, m_impedance);
  WriteComplex(block, kRenormalization, m_renormalization);
}

bool operator==(PortSettings const & a, PortSettings const & b) {
  return a.m_name == b.m_name && a.m_deembeddingDist == b.m_deembeddingDist && a.m_impedance == b.m_impedance &&
         a.m_renormalization == b.m_renormalization;
}
