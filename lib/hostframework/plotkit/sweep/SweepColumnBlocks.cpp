// A column of a sweep in a block:
//
//     Variable = "x"
//     ParameterType = 1
//     Units = 130
//     Values(1e-12, 2e-12)       complex: real and imaginary parts in turn; texts: Values ["a", "b"]

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/io/DoDataExchange.h"
#include "plotkit/sweep/SweepColumn.h"

#include <cmath>
#include <limits>

namespace {

wchar_t const * const kVariable = L"Variable";
wchar_t const * const kParameterType = L"ParameterType";
wchar_t const * const kUnits = L"Units";
wchar_t const * const kValues = L"Values";

io::CBlock_func const * FindValues(io::CBlock const & block) {
  return static_cast<io::CBlock_func const *>(block.FindItem(kValues, io::CBlock_item::Kind::Func));
}

/// All arguments as numbers; false when one is none.
bool ReadNumbers(io::CBlock const & block, std::vector<double> & numbers) {
  io::CBlock_func const * const func = FindValues(block);
  if (!func)
    return block.FindItem(kValues, io::CBlock_item::Kind::Vec) == nullptr;
  auto place = func->begin();
  func->QueryUnamedValues(place, numbers);
  return numbers.size() == func->ArgumentCount();
}

bool AreWhole(std::vector<double> const & numbers) {
  constexpr auto limit = static_cast<double>(std::numeric_limits<long>::max());
  for (double const number : numbers)
    if (!(std::abs(number) < limit) || std::trunc(number) != number)
      return false;
  return true;
}

bool ReadComplexes(io::CBlock const & block, std::vector<AComplex<double>> & values) {
  std::vector<double> parts;
  if (!ReadNumbers(block, parts) || parts.size() % 2 != 0)
    return false;
  values.reserve(parts.size() / 2);
  for (std::size_t at = 0; at < parts.size(); at += 2)
    values.emplace_back(parts[at], parts[at + 1]);
  return true;
}

bool ReadTexts(io::CBlock const & block, std::vector<AString> & texts) {
  auto const * const list = static_cast<io::CBlock_vec const *>(block.FindItem(kValues, io::CBlock_item::Kind::Vec));
  return list ? list->QueryValues(texts) : FindValues(block) == nullptr;
}

void WriteNumbers(io::CBlock & block, std::vector<double> const & numbers) {
  io::CBlock_func func{AString(kValues)};
  func.AppendReals(numbers);
  block << func;
}

struct Writer {
  io::CBlock & block;

  void operator()(std::vector<double> const & values) const { WriteNumbers(block, values); }
  void operator()(std::vector<AComplex<double>> const & values) const {
    std::vector<double> parts;
    parts.reserve(values.size() * 2);
    for (AComplex<double> const & value : values)
      parts.insert(parts.end(), {value.real(), value.imag()});
    WriteNumbers(block, parts);
  }
  void operator()(std::vector<AString> const & values) const {
    io::CBlock_vec list{AString(kValues)};
    list.AppendValues(values);
    block << list;
  }
};

} // namespace

bool SweepColumn::ReadValues(io::CBlock const & block, val::ParameterType type, Values & values) {
  SweepColumn const sample(type, Units::kNoUnits, nullptr);
  values = sample.m_values;
  if (auto * const texts = std::get_if<std::vector<AString>>(&values))
    return type == val::kText && ReadTexts(block, *texts);
  if (auto * const complexes = std::get_if<std::vector<AComplex<double>>>(&values))
    return ReadComplexes(block, *complexes);
  auto & reals = std::get<std::vector<double>>(values);
  bool const isReal = type == val::kReal || type == val::kInteger || type == val::kRealArray;
  return isReal && ReadNumbers(block, reals) && (type != val::kInteger || AreWhole(reals));
}

io::ReadError SweepColumn::Read(io::CBlock const & block, IDesignEditor const * editor) {
  AString name;
  block >> io::named(kVariable, name);
  if (!block.Found() || name.empty())
    return io::kNotFound;
  int type = val::kReal;
  block >> io::named(kParameterType, type);
  int units = Units::kNoUnits;
  block >> io::named(kUnits, units);
  Values values;
  if (!ReadValues(block, static_cast<val::ParameterType>(type), values))
    return io::kBadContent;
  bool const isUnitKnown = IsKnownUnit(static_cast<Units::FullUnitType>(units));
  m_variable = SweptVariable(SweptVariable::Find(name, editor));
  m_name = name;
  m_type = static_cast<val::ParameterType>(type);
  m_units = isUnitKnown ? static_cast<Units::FullUnitType>(units) : Units::kNoUnits;
  m_values = std::move(values);
  return GetVariable() && isUnitKnown ? io::kNoError : io::kWarning;
}

bool SweepColumn::Write(io::CBlock & block) const {
  if (m_name.empty())
    return false;
  block << io::named(kVariable, m_name) << io::named(kParameterType, static_cast<int>(m_type))
        << io::named(kUnits, static_cast<int>(m_units));
  std::visit(Writer{block}, m_values);
  return true;
}
