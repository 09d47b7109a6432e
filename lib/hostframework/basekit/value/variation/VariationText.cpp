#include "basekit/value/variation/VariationText.h"

#include "basekit/text/CaseFolding.h"
#include "basekit/value/units/QuantityText.h"
#include "basekit/value/units/Tolerance.h"
#include "basekit/value/variation/VariationReader.h"

#include <algorithm>

namespace {

bool NameLess(VariationText::Pair const & a, VariationText::Pair const & b) {
  return text::CompareNoCase(a.name, b.name) < 0;
}

bool SameName(VariationText::Pair const & a, VariationText::Pair const & b) {
  return text::CompareNoCase(a.name, b.name) == 0;
}

int ThreeWay(int order) { return order == 0 ? 0 : order < 0 ? 1 : 2; }

val::ComparedValue Compared(VariationText::Pair const & pair) { return {pair.isNumber, pair.number, pair.text}; }

} // namespace

VariationText::VariationText(AString const & text) : m_source(text) {
  variation::Reader reader(m_source.View());
  m_opaque = !reader.Read(m_pairs);
  m_decoded = reader.Decoded();
  if (!m_opaque && !std::is_sorted(m_pairs.begin(), m_pairs.end(), NameLess))
    std::sort(m_pairs.begin(), m_pairs.end(), NameLess);
  if (std::adjacent_find(m_pairs.begin(), m_pairs.end(), SameName) != m_pairs.end())
    m_opaque = true;
  if (m_opaque) {
    m_pairs = {};
    m_decoded = nullptr;
    return;
  }
  for (Pair & pair : m_pairs) {
    val::Quantity quantity;
    pair.isNumber = val::ParseQuantity(pair.text, quantity);
    pair.number = {quantity.real, quantity.imaginary};
  }
}

VariationText::Pair const * VariationText::Find(std::wstring_view name) const {
  auto const found =
      std::lower_bound(m_pairs.begin(), m_pairs.end(), name, [](Pair const & pair, std::wstring_view wanted) {
        return text::CompareNoCase(pair.name, wanted) < 0;
      });
  return found != m_pairs.end() && text::CompareNoCase(found->name, name) == 0 ? &*found : nullptr;
}

int VariationText::Compare(VariationText const & a, VariationText const & b) {
  if (a.m_opaque || b.m_opaque)
    return a.m_opaque != b.m_opaque ? (b.m_opaque ? 1 : 2) : ThreeWay(a.m_source.CompareNoCase(b.m_source));
  AComplex<double> const relative(variation::relativeTolerance, variation::relativeTolerance);
  std::size_t const common = std::min(a.m_pairs.size(), b.m_pairs.size());
  for (std::size_t index = 0; index < common; ++index) {
    Pair const & left = a.m_pairs[index];
    Pair const & right = b.m_pairs[index];
    if (int const names = text::CompareNoCase(left.name, right.name); names != 0)
      return ThreeWay(names);
    if (int const values = val::CompareWithin(Compared(left), Compared(right), relative, {}); values != 0)
      return values;
  }
  return a.m_pairs.size() == b.m_pairs.size() ? 0 : a.m_pairs.size() < b.m_pairs.size() ? 1 : 2;
}

bool operator==(VariationText const & a, VariationText const & b) { return VariationText::Compare(a, b) == 0; }
