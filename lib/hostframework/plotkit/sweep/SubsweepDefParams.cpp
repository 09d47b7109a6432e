#include "plotkit/sweep/SubsweepDefParams.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "plotkit/sweep/IndexedSubsweep.h"
#include "plotkit/sweep/PostprocessSweep.h"
#include "plotkit/sweep/RangeSubsweep.h"

#include <limits>

namespace {

wchar_t const * const kVariable = L"Variable";
wchar_t const * const kSpecial = L"Special";
wchar_t const * const kParameterType = L"ParameterType";
wchar_t const * const kUnits = L"Units";
wchar_t const * const kSelection = L"Selection";
wchar_t const * const kRange = L"Range";

io::CBlock_func const * FindFunc(io::CBlock const & block, wchar_t const * name) {
  return static_cast<io::CBlock_func const *>(block.FindItem(name, io::CBlock_item::Kind::Func));
}

bool ReadPlaces(io::CBlock_func const & func, std::vector<unsigned> & places) {
  auto place = func.begin();
  for (long number = 0; func.QueryUnamedValues(place, number);) {
    if (number < 0 || number > std::numeric_limits<unsigned>::max())
      return false;
    places.push_back(static_cast<unsigned>(number));
  }
  return places.size() == func.ArgumentCount();
}

bool ReadRange(io::CBlock_func const & func, SteppedRange & range) {
  std::vector<double> numbers;
  auto place = func.begin();
  func.QueryUnamedValues(place, numbers);
  if (numbers.size() != 3)
    return false;
  range = SteppedRange(numbers[0], numbers[1], numbers[2]);
  return true;
}

} // namespace

AString SubsweepDefParams::GetItemName() const { return L"Subsweep"; }

void SubsweepDefParams::SetSpecial(bool isSpecial, val::ParameterType type, Units::FullUnitType units) {
  m_isSpecial = isSpecial;
  m_type = type;
  m_units = units;
}

io::ReadError SubsweepDefParams::DoDataExchange(io::CBlock & block, bool reading) {
  if (reading)
    return ReadFrom(block);
  WriteTo(block);
  return io::kNoError;
}

io::ReadError SubsweepDefParams::ReadFrom(io::CBlock const & block) {
  SubsweepDefParams read;
  block >> io::named(kVariable, read.m_variable);
  if (!block.Found() || read.m_variable.empty())
    return io::kNotFound;
  block >> io::named(kSpecial, read.m_isSpecial);
  int type = read.m_type;
  int units = read.m_units;
  block >> io::named(kParameterType, type);
  block >> io::named(kUnits, units);
  read.m_type = static_cast<val::ParameterType>(type);
  read.m_units = static_cast<Units::FullUnitType>(units);
  if (auto const * const func = FindFunc(block, kSelection); func && !ReadPlaces(*func, read.m_places.emplace()))
    return io::kBadContent;
  if (auto const * const func = FindFunc(block, kRange); func && !ReadRange(*func, read.m_range.emplace()))
    return io::kBadContent;
  *this = read;
  return io::kNoError;
}

void SubsweepDefParams::WriteTo(io::CBlock & block) const {
  block << io::named(kVariable, m_variable);
  if (m_isSpecial)
    block << io::named(kSpecial, true) << io::named(kParameterType, static_cast<int>(m_type))
          << io::named(kUnits, static_cast<int>(m_units));
  if (m_places) {
    io::CBlock_func selection{AString(kSelection)};
    for (unsigned const place : *m_places)
      selection << static_cast<long>(place);
    block << selection;
  }
  if (m_range) {
    io::CBlock_func range{AString(kRange)};
    range << m_range->GetMin() << m_range->GetMax() << m_range->GetIncrement();
    block << range;
  }
}

Subsweep * SubsweepDefParams::CreateSubsweep(SweepBase & sweep) const {
  PostprocessSweep * const postprocess = sweep.GetPostprocessSweep();
  if ((postprocess && m_places) || (!postprocess && m_range))
    return nullptr;
  if (postprocess && m_range)
    return new RangeSubsweep(*postprocess, *m_range);
  Subsweep * const subsweep = sweep.CreateSubsweep(true);
  if (auto * const indexed = dynamic_cast<IndexedSubsweep *>(subsweep); indexed && m_places)
    indexed->SetSelection(*m_places);
  return subsweep;
}
