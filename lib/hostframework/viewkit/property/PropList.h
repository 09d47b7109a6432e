#pragma once

#include "basekit/value/Value.h"

#include <vector>

/// One property: a named value with a description.
class ValueProp {
public:
  ValueProp(AString const & name, Value const & value, AString const & description)
      : m_name(name), m_value(value), m_description(description) {}
  /// The value is made from its text, taken in the given units.
  ValueProp(AString const & name, AString const & text, Units::FullUnitType units, AString const & description)
      : m_name(name), m_value(units), m_description(description) {
    m_value.SetConstantText(text, units);
  }

  AString const & GetName() const { return m_name; }
  Value const & GetValue() const { return m_value; }
  void SetValue(Value const & value) { m_value = value; }
  AString const & GetDescription() const { return m_description; }

private:
  AString m_name;
  Value m_value;
  AString m_description;
};

/// Properties in the order in which they were added; names are looked up without case.
class PropList {
public:
  using const_iterator = std::vector<ValueProp>::const_iterator;

  void AddProp(ValueProp const & property) { m_properties.push_back(property); }
  /// Null when the name is not there.
  ValueProp * FindProp(AString const & name);
  ValueProp const * FindProp(AString const & name) const { return const_cast<PropList *>(this)->FindProp(name); }
  ValueProp const & operator[](std::size_t index) const { return m_properties[index]; }

  const_iterator begin() const { return m_properties.begin(); }
  const_iterator end() const { return m_properties.end(); }
  std::size_t size() const { return m_properties.size(); }
  bool empty() const { return m_properties.empty(); }
  void clear() { m_properties.clear(); }

private:
  std::vector<ValueProp> m_properties;
};
