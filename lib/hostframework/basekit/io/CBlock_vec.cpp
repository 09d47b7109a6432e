#include "basekit/io/CBlock_vec.h"

namespace io {

namespace {

template <class T> bool ReadAll(CBlock_func_arg const & arguments, std::vector<T> & values) {
  std::vector<T> read;
  read.reserve(arguments.ArgumentCount());
  for (auto place = arguments.begin(); place != arguments.end(); ++place)
    if (!place.Value().Query(read.emplace_back()))
      return false;
  values = std::move(read);
  return true;
}

} // namespace

CBlock_vec & CBlock_vec::operator<<(AString const & value) {
  m_values.AppendText(value);
  return *this;
}

CBlock_vec & CBlock_vec::operator<<(double const & value) {
  m_values.AppendReal(value);
  return *this;
}

void CBlock_vec::AppendValues(std::vector<AString> const & values) { m_values.AppendTexts(values); }

void CBlock_vec::AppendValues(std::span<double const> values) { m_values.AppendReals(values); }

bool CBlock_vec::QueryValues(std::vector<AString> & values) const { return ReadAll(m_values, values); }

bool CBlock_vec::QueryValues(std::vector<double> & values) const {
  auto const run = m_values.Reals(m_values.begin());
  if (run.size() != m_values.ArgumentCount())
    return ReadAll(m_values, values);
  values.assign(run.begin(), run.end());
  return true;
}

void CBlock_vec::Name(AString const & name) {
  NoteRename();
  m_name = name;
}

std::size_t CBlock_vec::SizeOf(bool deep) const {
  return sizeof *this + (deep ? m_name.size() * sizeof(wchar_t) + m_values.ArgumentMemory() : 0);
}

} // namespace io
