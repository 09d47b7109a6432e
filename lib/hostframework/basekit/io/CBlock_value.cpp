#include "basekit/io/CBlock_value.h"

#include "basekit/io/CBlock_named_value.h"
#include "basekit/io/TextTokens.h"
#include "basekit/text/Utf8.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace io {

namespace {

template <class Whole> bool RealToWhole(double real, Whole & value) {
  double const limit = std::ldexp(1.0, std::numeric_limits<Whole>::digits); // one above the largest
  double const lowest = std::is_signed_v<Whole> ? -limit : 0.0;
  if (!(real >= lowest && real < limit) || real != std::trunc(real))
    return false;
  value = static_cast<Whole>(real);
  return true;
}

bool SameNumber(long integer, double real) {
  long whole = 0;
  return RealToWhole(real, whole) && whole == integer;
}

} // namespace

CToken CBlock_value::Token() const {
  std::string text;
  switch (m_type) {
  case Type::None:
    return CToken(AString(), CToken::Kind::Word);
  case Type::Text:
    return CToken(m_text, CToken::Kind::Quoted);
  case Type::Bool:
    return CToken(m_number.integer ? L"true" : L"false", CToken::Kind::Word);
  case Type::Integer:
    AppendInteger(text, m_number.integer);
    break;
  case Type::Real:
    AppendReal(text, m_number.real, 0);
    break;
  }
  return CToken(text::FromUtf8(text), CToken::Kind::Number);
}

bool CBlock_value::operator==(CBlock_value const & other) const {
  if (m_type == Type::Integer && other.m_type == Type::Real)
    return SameNumber(m_number.integer, other.m_number.real);
  if (m_type == Type::Real && other.m_type == Type::Integer)
    return SameNumber(other.m_number.integer, m_number.real);
  if (m_type != other.m_type)
    return false;
  switch (m_type) {
  case Type::None:
    return true;
  case Type::Text:
    return m_text == other.m_text;
  case Type::Bool:
  case Type::Integer:
    return m_number.integer == other.m_number.integer;
  case Type::Real:
    return m_number.real == other.m_number.real || (std::isnan(m_number.real) && std::isnan(other.m_number.real));
  }
  return false;
}

void CBlock_value::Clear() { *this = CBlock_value(); }

std::size_t CBlock_value::SizeOf(bool deep) const {
  return sizeof *this + (deep ? m_text.size() * sizeof(wchar_t) : 0);
}

bool CBlock_value::Query(wchar_t *& value) const {
  if (m_type != Type::Text)
    return false;
  value = new wchar_t[m_text.size() + 1];
  std::copy_n(m_text.c_str(), m_text.size() + 1, value);
  return true;
}

bool CBlock_value::Query(bool & value) const {
  if (m_type != Type::Bool)
    return false;
  value = m_number.integer != 0;
  return true;
}

bool CBlock_value::Query(AString & value) const {
  if (m_type != Type::Text)
    return false;
  value = m_text;
  return true;
}

template <class Whole> bool CBlock_value::QueryWhole(Whole & value) const {
  if (m_type == Type::Real)
    return RealToWhole(m_number.real, value);
  if (m_type != Type::Integer || !std::in_range<Whole>(m_number.integer))
    return false;
  value = static_cast<Whole>(m_number.integer);
  return true;
}

bool CBlock_value::Query(unsigned long long & value) const { return QueryWhole(value); }
bool CBlock_value::Query(long long & value) const { return QueryWhole(value); }
bool CBlock_value::Query(unsigned long & value) const { return QueryWhole(value); }
bool CBlock_value::Query(unsigned int & value) const { return QueryWhole(value); }
bool CBlock_value::Query(unsigned short & value) const { return QueryWhole(value); }
bool CBlock_value::Query(long & value) const { return QueryWhole(value); }
bool CBlock_value::Query(int & value) const { return QueryWhole(value); }
bool CBlock_value::Query(short & value) const { return QueryWhole(value); }

bool CBlock_value::Query(float & value) const {
  double real = 0;
  if (!Query(real) || (std::isfinite(real) && std::fabs(real) > static_cast<double>(std::numeric_limits<float>::max())))
    return false;
  value = static_cast<float>(real);
  return true;
}

bool CBlock_value::Query(double & value) const {
  if (m_type != Type::Real && m_type != Type::Integer)
    return false;
  value = m_type == Type::Real ? m_number.real : static_cast<double>(m_number.integer);
  return true;
}

void CBlock_named_value::Name(AString const & name) {
  NoteRename();
  m_name = name;
}

std::size_t CBlock_named_value::SizeOf(bool deep) const {
  return sizeof *this + (deep ? m_name.size() * sizeof(wchar_t) + m_value.SizeOf(true) - sizeof m_value : 0);
}

} // namespace io
