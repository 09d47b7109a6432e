#include "solutionmanager/convergence/ConvValue.h"

#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/convergence/ConvDef.h"

AString const StringConvValue::kInvalid(L"N/A");

namespace {

template <class T>
void ReadOr(io::CBlock_ptr<io::CBlock_func> const & func, ConvDef const & def, T & value, T const & invalid) {
  value = invalid;
  if (func)
    *func >> io::named(def.GetToken(), value);
}

} // namespace

ConvValue::~ConvValue() = default;

bool ConvValue::GetValue(double & number) const {
  number = DoubleConvValue::kInvalid;
  return false;
}

bool IntConvValue::Read(io::CBlock_ptr<io::CBlock_func> const & func) {
  ReadOr(func, *GetDef(), m_value, kInvalid);
  return true;
}

bool IntConvValue::GetValue(double & number) const {
  number = IsValid() ? m_value : DoubleConvValue::kInvalid;
  return true;
}

AString IntConvValue::GetValue() const { return IsValid() ? AString::Format(L"%d", m_value) : L"N/A"; }

bool IntConvValue::Write(io::CBlockFuncPtr & func) const {
  if (IsValid())
    *func << io::named(GetDef()->GetToken(), m_value);
  return true;
}

bool DoubleConvValue::Read(io::CBlock_ptr<io::CBlock_func> const & func) {
  ReadOr(func, *GetDef(), m_value, kInvalid);
  return true;
}

bool DoubleConvValue::GetValue(double & number) const {
  number = m_value;
  return true;
}

AString DoubleConvValue::GetValue() const { return IsValid() ? AString::Format(L"%.5g", m_value) : L"N/A"; }

bool DoubleConvValue::Write(io::CBlockFuncPtr & func) const {
  if (IsValid())
    *func << io::named(GetDef()->GetToken(), m_value);
  return true;
}

bool StringConvValue::Read(io::CBlock_ptr<io::CBlock_func> const & func) {
  ReadOr(func, *GetDef(), m_value, kInvalid);
  return true;
}

bool StringConvValue::Write(io::CBlockFuncPtr & func) const {
  if (IsValid())
    *func << io::named(GetDef()->GetToken(), m_value);
  return true;
}
