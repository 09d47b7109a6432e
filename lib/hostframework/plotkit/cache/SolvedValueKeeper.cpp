#include "plotkit/cache/SolvedValueKeeper.h"

#include "plotkit/sample/VariationSamples.h"
#include "plotkit/simvalue/ISolvedColumns.h"

namespace {

/// More is left to the column's own growth.
constexpr std::size_t kMaxReserved = std::size_t(1) << 28;

void Add(CSimValueCacheV::Numbers & kept, std::size_t point, AString const & variation, NumberColumn const & numbers,
         std::size_t pointsToCome) {
  bool const isFirst = kept.column.empty();
  if (numbers.isComplex) {
    std::vector<std::complex<double>> const complexes(numbers.complexes.begin(), numbers.complexes.end());
    kept.column.Append(std::span<std::complex<double> const>(complexes));
  } else {
    kept.column.Append(std::span<double const>(numbers.reals));
  }
  if (isFirst && numbers.GetCount() < kMaxReserved / pointsToCome)
    kept.column.Reserve(numbers.GetCount() * pointsToCome);
  kept.segments.Add(point, variation, numbers.GetCount());
}

void Arrange(CSimValueCacheV::Numbers & numbers) {
  std::vector<ValueColumn::Range> ranges;
  if (numbers.segments.Arrange(ranges))
    numbers.column.Arrange(ranges);
}

} // namespace

void SolvedValueKeeper::Keep(std::size_t point, AString const & variation, ISolvedColumns const & columns,
                             VariationSamples const & samples, std::vector<AString> const & axes,
                             std::size_t pointsToCome) {
  bool isAnyKept = false;
  for (auto const & [value, numbers] : samples.GetSolved())
    if (numbers.GetCount() == columns.GetSampleCount() && numbers.GetCount() > 0) {
      Add(m_values[value], point, variation, numbers, pointsToCome);
      isAnyKept = true;
    }
  NumberColumn numbers;
  for (AString const & axis : axes)
    if (isAnyKept && columns.GetVariableColumn(axis, numbers.reals) && numbers.GetCount() == columns.GetSampleCount())
      Add(m_axes[axis], point, variation, numbers, pointsToCome);
}

void SolvedValueKeeper::StoreIn(CSimValueCacheV & cache, long version) {
  for (auto & [value, numbers] : m_values) {
    Arrange(numbers);
    cache.Store(version, *value, std::move(numbers));
  }
  for (auto & [axis, numbers] : m_axes) {
    Arrange(numbers);
    cache.AxisForEdit(version, axis) = std::move(numbers);
  }
}
