#include "basekit/io/CBlock_func_arg.h"

#include <algorithm>

namespace io {

namespace {

constexpr long kExactInDouble = 1L << 53;

bool IsExactInDouble(long value) { return value >= -kExactInDouble && value <= kExactInDouble; }

} // namespace

CBlock_func_arg::iterator & CBlock_func_arg::iterator::operator++() {
  m_owner->Skip(*this, 1);
  return *this;
}

CBlock_func_arg::iterator CBlock_func_arg::iterator::operator++(int) {
  auto const before = *this;
  ++*this;
  return before;
}

bool CBlock_func_arg::iterator::IsNamed() const {
  return m_owner && m_run < m_owner->m_runs.size() && m_owner->m_runs[m_run].index() == 0;
}

CBlock_ptr<CBlock_item> CBlock_func_arg::iterator::operator*() const {
  if (IsNamed())
    return std::get<0>(m_owner->m_runs[m_run]);
  return CBlock_ptr<CBlock_item>(new CBlock_value(Value()));
}

CBlock_value CBlock_func_arg::iterator::Value() const {
  if (!m_owner || m_run >= m_owner->m_runs.size())
    return {};
  auto const & run = m_owner->m_runs[m_run];
  if (m_at >= RunSize(run))
    return {};
  if (auto const * named = std::get_if<CBlock_ptr<CBlock_named_value>>(&run))
    return (*named)->Value();
  if (auto const * reals = std::get_if<RealRun>(&run))
    return CBlock_value((*reals)[m_at]);
  if (auto const * integers = std::get_if<IntegerRun>(&run))
    return CBlock_value((*integers)[m_at]);
  if (auto const * texts = std::get_if<TextRun>(&run))
    return CBlock_value((*texts)[m_at]);
  return std::get<CBlock_value>(run);
}

CBlock_func_arg::CBlock_func_arg(CBlock_func_arg const & other) : m_runs(other.m_runs) {
  for (auto & run : m_runs)
    if (auto * named = std::get_if<CBlock_ptr<CBlock_named_value>>(&run))
      *named = CBlock_ptr<CBlock_named_value>(new CBlock_named_value(**named));
}

CBlock_func_arg & CBlock_func_arg::operator=(CBlock_func_arg const & other) {
  if (this != &other)
    *this = CBlock_func_arg(other);
  return *this;
}

std::size_t CBlock_func_arg::RunSize(Run const & run) {
  if (auto const * reals = std::get_if<RealRun>(&run))
    return reals->size();
  if (auto const * integers = std::get_if<IntegerRun>(&run))
    return integers->size();
  if (auto const * texts = std::get_if<TextRun>(&run))
    return texts->size();
  return 1;
}

std::size_t CBlock_func_arg::ArgumentCount() const {
  std::size_t count = 0;
  for (auto const & run : m_runs)
    count += RunSize(run);
  return count;
}

std::size_t CBlock_func_arg::ArgumentMemory() const {
  std::size_t bytes = m_runs.capacity() * sizeof(Run);
  for (auto const & run : m_runs) {
    if (auto const * named = std::get_if<CBlock_ptr<CBlock_named_value>>(&run))
      bytes += (*named)->SizeOf(true);
    else if (auto const * reals = std::get_if<RealRun>(&run))
      bytes += reals->capacity() * sizeof(double);
    else if (auto const * integers = std::get_if<IntegerRun>(&run))
      bytes += integers->capacity() * sizeof(long);
    else if (auto const * texts = std::get_if<TextRun>(&run))
      for (auto const & text : *texts)
        bytes += sizeof text + text.size() * sizeof(wchar_t);
  }
  return bytes;
}

template <class RunType> RunType * CBlock_func_arg::LastRun() {
  return m_runs.empty() ? nullptr : std::get_if<RunType>(&m_runs.back());
}

template <class RunType> RunType & CBlock_func_arg::RunToExtend() {
  if (auto * run = LastRun<RunType>())
    return *run;
  return std::get<RunType>(m_runs.emplace_back(RunType()));
}

// Whole numbers written among floating ones read back as whole: they join the run, which stays one.
CBlock_func_arg::RealRun & CBlock_func_arg::RealsToExtend() {
  if (auto const * integers = LastRun<IntegerRun>();
      integers && std::all_of(integers->begin(), integers->end(), IsExactInDouble))
    m_runs.back() = RealRun(integers->begin(), integers->end());
  return RunToExtend<RealRun>();
}

void CBlock_func_arg::AppendArgument(CBlock_value const & value) {
  AString text;
  long integer = 0;
  double real = 0;
  if (value.ValueType() == CBlock_value::Type::Integer && value.Query(integer))
    AppendInteger(integer);
  else if (value.ValueType() == CBlock_value::Type::Real && value.Query(real))
    AppendReal(real);
  else if (value.Query(text))
    AppendText(text);
  else
    m_runs.emplace_back(value);
}

void CBlock_func_arg::AppendArgument(CBlock_ptr<CBlock_named_value> const & named) {
  if (!named)
    return;
  // Named arguments seldom stand alone.
  if (m_runs.empty())
    m_runs.reserve(2);
  m_runs.emplace_back(named);
}

void CBlock_func_arg::AppendReal(double value) { RealsToExtend().push_back(value); }

void CBlock_func_arg::AppendInteger(long value) {
  if (auto * reals = LastRun<RealRun>(); reals && IsExactInDouble(value))
    reals->push_back(static_cast<double>(value));
  else
    RunToExtend<IntegerRun>().push_back(value);
}

void CBlock_func_arg::AppendText(AString const & value) { RunToExtend<TextRun>().push_back(value); }

void CBlock_func_arg::AppendReals(std::span<double const> values) {
  if (values.empty())
    return;
  auto & run = RealsToExtend();
  run.insert(run.end(), values.begin(), values.end());
}

void CBlock_func_arg::AppendIntegers(std::span<long const> values) {
  for (long const value : values)
    AppendInteger(value);
}

void CBlock_func_arg::AppendTexts(std::span<AString const> values) {
  if (values.empty())
    return;
  auto & run = RunToExtend<TextRun>();
  run.insert(run.end(), values.begin(), values.end());
}

void CBlock_func_arg::AppendRun(std::vector<double> && values) {
  if (m_runs.empty() && !values.empty())
    m_runs.emplace_back(std::move(values));
  else
    AppendReals(values);
}

void CBlock_func_arg::AppendRun(std::vector<long> && values) {
  if (m_runs.empty() && !values.empty())
    m_runs.emplace_back(std::move(values));
  else
    AppendIntegers(values);
}

CBlock_named_value const * CBlock_func_arg::FindArgument(AString const & name) const {
  for (auto const & run : m_runs)
    if (auto const * named = std::get_if<CBlock_ptr<CBlock_named_value>>(&run))
      if (AString::MatchNoCase((*named)->Name(), name))
        return named->Item();
  return nullptr;
}

template <class RunType>
std::span<typename RunType::value_type const> CBlock_func_arg::RestOfRun(iterator const & from) const {
  if (from.m_owner != this || from.m_run >= m_runs.size())
    return {};
  auto const * run = std::get_if<RunType>(&m_runs[from.m_run]);
  if (!run || from.m_at >= run->size())
    return {};
  return std::span<typename RunType::value_type const>(*run).subspan(from.m_at);
}

std::span<double const> CBlock_func_arg::Reals(iterator const & from) const { return RestOfRun<RealRun>(from); }

std::span<long const> CBlock_func_arg::Integers(iterator const & from) const { return RestOfRun<IntegerRun>(from); }

std::span<AString const> CBlock_func_arg::Texts(iterator const & from) const { return RestOfRun<TextRun>(from); }

// Going on at the end stays at the end.
void CBlock_func_arg::Skip(iterator & place, std::size_t count) const {
  while (count > 0 && place.m_run < m_runs.size()) {
    auto const size = RunSize(m_runs[place.m_run]);
    auto const step = std::min(count, size - std::min(size, place.m_at));
    place.m_at += step;
    count -= step;
    if (place.m_at >= size) {
      ++place.m_run;
      place.m_at = 0;
    }
  }
}

} // namespace io
