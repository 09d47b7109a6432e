#include "plotkit/sweep/SynchronizedSweep.h"

#include "basekit/io/CBlock.h"
#include "plotkit/sweep/IndexedSubsweep.h"

AString const SynchronizedSweep::kSynchronizedSweepKeyword(L"SynchronizedSweep");

namespace {

/// The name of the block of one column.
wchar_t const * const kColumn = L"Column";
wchar_t const * const kComma = L", ";

} // namespace

bool SynchronizedSweep::AddColumn(SweepColumn const & column) {
  if (!m_columns.empty() && column.GetCount() != GetCount())
    return false;
  m_columns.push_back(column);
  return true;
}

SweepColumn const * SynchronizedSweep::GetColumn(unsigned variable) const {
  return variable < m_columns.size() ? &m_columns[variable] : nullptr;
}

AString SynchronizedSweep::GetName() const { return m_columns.empty() ? AString() : m_columns.front().GetName(); }

Subsweep * SynchronizedSweep::CreateSubsweep(bool allPoints) { return new IndexedSubsweep(*this, allPoints); }

AString SynchronizedSweep::GetSingleValueText(unsigned place) const {
  std::wstring joined;
  for (SweepColumn const & column : m_columns) {
    if (&column != &m_columns.front())
      joined += kComma;
    joined += column.TextAt(place).View();
  }
  return joined;
}

bool SynchronizedSweep::SetSweepValue(unsigned place) {
  bool isSet = !m_columns.empty();
  for (SweepColumn const & column : m_columns)
    isSet = column.SetVariable(place) && isSet;
  return isSet;
}

Variable * SynchronizedSweep::GetVariable(unsigned variable) const {
  SweepColumn const * const column = GetColumn(variable);
  return column ? column->GetVariable() : nullptr;
}

Units::FullUnitType SynchronizedSweep::GetUnits(unsigned variable) const {
  SweepColumn const * const column = GetColumn(variable);
  return column ? column->GetUnits() : Units::kNoUnits;
}

val::ParameterType SynchronizedSweep::GetParameterType(unsigned variable) const {
  SweepColumn const * const column = GetColumn(variable);
  return column ? column->GetParameterType() : val::kNotAQuantity;
}

void SynchronizedSweep::SynchronizeWithVariable() {
  for (SweepColumn & column : m_columns)
    column.SynchronizeWithVariable();
}

io::ReadError SynchronizedSweep::Read(io::CBlock const & block, IDesignEditor * editor) {
  SynchronizedSweep read;
  io::CReadError result;
  for (auto const & child : block) {
    if (!child->IsBlock() || !AString::MatchNoCase(child->Name(), kColumn))
      continue;
    SweepColumn column;
    io::ReadError const error = column.Read(static_cast<io::CBlock const &>(*child), editor);
    if (error != io::kNoError && error != io::kWarning)
      return error;
    if (!read.AddColumn(column))
      return io::kBadContent;
    result += error;
  }
  if (read.m_columns.empty())
    return io::kNotFound;
  m_columns.swap(read.m_columns);
  return result;
}

bool SynchronizedSweep::Write(io::CBlock & block) const {
  if (m_columns.empty() || IsSpecialSweep())
    return false;
  io::CBlock written;
  for (SweepColumn const & column : m_columns) {
    io::CBlock_ptr<io::CBlock> const child(new io::CBlock(kColumn));
    if (!column.Write(*child))
      return false;
    written << child;
  }
  for (auto const & child : written)
    block << child;
  return true;
}

AString SynchronizedSweep::GetRepVarName() const {
  std::wstring joined;
  for (SweepColumn const & column : m_columns) {
    if (&column != &m_columns.front())
      joined += kComma;
    joined += column.GetName().View();
  }
  return joined;
}
