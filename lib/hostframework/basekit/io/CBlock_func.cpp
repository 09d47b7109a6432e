#include "basekit/io/CBlock_func.h"

#include "basekit/io/CQuery_ok_manip.h"

namespace io {

namespace {

template <class T>
bool TakePositional(CBlock_func_arg const & arguments, CBlock_func_arg::iterator & place, T & value) {
  auto at = place;
  while (at.IsNamed())
    ++at;
  if (at == arguments.end() || !at.Value().Query(value))
    return false;
  place = ++at;
  return true;
}

} // namespace

CBlock_func & CBlock_func::operator<<(CBlock_named_value const & named) {
  AppendArgument(CBlock_ptr<CBlock_named_value>(new CBlock_named_value(named)));
  return *this;
}

CBlock_func & CBlock_func::operator<<(int const & value) {
  AppendInteger(value);
  return *this;
}

CBlock_func & CBlock_func::operator<<(long const & value) {
  AppendInteger(value);
  return *this;
}

CBlock_func & CBlock_func::operator<<(double const & value) {
  AppendReal(value);
  return *this;
}

CBlock_func & CBlock_func::operator<<(bool const & value) {
  AppendArgument(CBlock_value(value));
  return *this;
}

CBlock_func & CBlock_func::operator<<(AString const & value) {
  AppendText(value);
  return *this;
}

CBlock_func & CBlock_func::operator<<(wchar_t const * value) { return *this << AString(value); }

CBlock_func const & CBlock_func::operator>>(CBlock_named_value & named) const {
  auto const * found = FindArgument(named.Name());
  m_found = found != nullptr;
  if (found)
    named.Value() = found->Value();
  return *this;
}

CBlock_func const & CBlock_func::operator>>(CQuery_ok_manip const & manip) const {
  *manip.m_ok = m_found;
  return *this;
}

bool CBlock_func::QueryUnamedValues(iterator & place, long & value) const {
  return m_found = TakePositional(*this, place, value);
}

bool CBlock_func::QueryUnamedValues(iterator & place, int & value) const {
  return m_found = TakePositional(*this, place, value);
}

bool CBlock_func::QueryUnamedValues(iterator & place, double & value) const {
  return m_found = TakePositional(*this, place, value);
}

bool CBlock_func::QueryUnamedValues(iterator & place, bool & value) const {
  return m_found = TakePositional(*this, place, value);
}

bool CBlock_func::QueryUnamedValues(iterator & place, AString & value) const {
  return m_found = TakePositional(*this, place, value);
}

void CBlock_func::QueryUnamedValues(iterator & place, std::vector<double> & values) const {
  for (;;) {
    auto const run = Reals(place);
    values.insert(values.end(), run.begin(), run.end());
    Skip(place, run.size());
    double next = 0;
    if (!QueryUnamedValues(place, next))
      return;
    values.push_back(next);
  }
}

std::span<double const> CBlock_func::AllReals() const {
  auto const run = Reals(begin());
  return run.size() == ArgumentCount() ? run : std::span<double const>();
}

void CBlock_func::Name(AString const & name) {
  NoteRename();
  m_name = name;
}

std::size_t CBlock_func::SizeOf(bool deep) const {
  return sizeof *this + (deep ? m_name.size() * sizeof(wchar_t) + ArgumentMemory() : 0);
}

} // namespace io
