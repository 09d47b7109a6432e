#include "basekit/value/VariableValues.h"

#include "basekit/value/units/QuantityText.h"
#include "basekit/value/variation/VariationText.h"

#include <algorithm>

void VariableValues::clear() {
  m_entries.clear();
  m_opaqueText.clear();
}

std::vector<VariableValues::Entry>::iterator VariableValues::LowerBound(AString const & name) {
  return std::lower_bound(m_entries.begin(), m_entries.end(), name, [](Entry const & entry, AString const & wanted) {
    return entry.name.CompareNoCase(wanted) < 0;
  });
}

Value const * VariableValues::Find(AString const & name) const {
  auto const found = const_cast<VariableValues *>(this)->LowerBound(name);
  return found != m_entries.end() && AString::MatchNoCase(found->name, name) ? &found->value : nullptr;
}

void VariableValues::Set(AString const & name, Value const & value) {
  m_opaqueText.clear();
  auto const found = LowerBound(name);
  if (found != m_entries.end() && AString::MatchNoCase(found->name, name))
    found->value = value;
  else
    m_entries.insert(found, Entry{name, value});
}

bool VariableValues::Add(AString const & name, Value const & value) {
  if (Find(name))
    return false;
  Set(name, value);
  return true;
}

bool VariableValues::Remove(AString const & name) {
  auto const found = LowerBound(name);
  if (found == m_entries.end() || !AString::MatchNoCase(found->name, name))
    return false;
  m_entries.erase(found);
  return true;
}

AString VariableValues::GetVariationKey() const {
  if (IsOpaque())
    return m_opaqueText;
  variation::Writer writer;
  for (Entry const & entry : m_entries)
    writer.Add(entry.name.View(), val::CaseProofText(entry.value.GetText()).View());
  return writer.Take();
}

int VariableValues::ConstantCompare(VariableValues const & a, VariableValues const & b,
                                    AComplex<double> const & relative, AComplex<double> const & absolute) {
  auto const threeWay = [](int order) { return order == 0 ? 0 : order < 0 ? 1 : 2; };
  if (a.IsOpaque() || b.IsOpaque())
    return a.IsOpaque() != b.IsOpaque() ? (b.IsOpaque() ? 1 : 2)
                                        : threeWay(a.m_opaqueText.CompareNoCase(b.m_opaqueText));
  auto left = a.begin();
  auto right = b.begin();
  for (; left != a.end() && right != b.end(); ++left, ++right) {
    if (int const names = left->name.CompareNoCase(right->name); names != 0)
      return threeWay(names);
    if (int const values = Value::Compare(left->value, right->value, relative, absolute); values != 0)
      return values;
  }
  return left != a.end() ? 2 : right != b.end() ? 1 : 0;
}

namespace {

int CompareAsVariations(VariableValues const & a, VariableValues const & b) {
  AComplex<double> const relative(variation::relativeTolerance, variation::relativeTolerance);
  return VariableValues::ConstantCompare(a, b, relative, {});
}

} // namespace

bool operator<(VariableValues const & a, VariableValues const & b) { return CompareAsVariations(a, b) == 1; }

bool operator==(VariableValues const & a, VariableValues const & b) { return CompareAsVariations(a, b) == 0; }
