#pragma once

#include "basekit/value/Value.h"

#include <cstddef>
#include <vector>

class IVariableServer;
class Variable;

/// Values by variable name, in the order of the names without case: a variation in parsed form.  A text that is no
/// variation text gives an opaque object without values, equal only to one of the same text without case.
class VariableValues {
public:
  struct Entry {
    AString name;
    Value value;
  };
  using const_iterator = std::vector<Entry>::const_iterator;

  const_iterator begin() const { return m_entries.begin(); }
  const_iterator end() const { return m_entries.end(); }
  bool empty() const { return m_entries.empty(); }
  std::size_t size() const { return m_entries.size(); }
  void clear();

  /// Null when the name is not there.
  Value const * Find(AString const & name) const;
  /// Adds the value or replaces the one of that name; an opaque object becomes an ordinary one.
  void Set(AString const & name, Value const & value);
  /// False, and nothing done, when the name is there.
  bool Add(AString const & name, Value const & value);
  bool Remove(AString const & name);
  bool IsOpaque() const { return !m_opaqueText.empty(); }

  /// The variation text of these values.
  AString GetVariationKey() const;

  struct LessVariableValues {
    bool operator()(VariableValues const & a, VariableValues const & b) const { return a < b; }
  };
  /// Equality and order by ConstantCompare with a relative tolerance of 1e-14.
  friend bool operator<(VariableValues const & a, VariableValues const & b);
  friend bool operator==(VariableValues const & a, VariableValues const & b);

  /// 0, 1, 2: equal, less, greater; name by name and value by value in order, the shorter list first.
  static int ConstantCompare(VariableValues const & a, VariableValues const & b, AComplex<double> const & relative,
                             AComplex<double> const & absolute);
  static bool AreVariationKeysEqual(AString const & a, AString const & b);

  /// Reads a variation text.  Names that the server knows take its spelling; others are kept when keepUnknownNames is
  /// set and left out otherwise.  Without a server all names are kept.  Values of defaults that the text lacks are
  /// added.  False when the text is no variation text: the values are then opaque, and no defaults enter.
  static bool ResolveVariationKey(AString const & variation, IVariableServer const * server, VariableValues & values,
                                  VariableValues const * defaults, bool keepUnknownNames);

  /// The value of one name; false, and the output unchanged, when the text does not hold it.  isNumber tells
  /// whether the value is one: without, the number is 0.
  static bool GetValueString(AString const & variation, AString const & name, AString & text);
  static bool GetValueString(AString const & variation, AString const & name, AComplex<double> & number,
                             bool & isNumber);

  /// The variation text of the variables, with the values of the map where it has them.  Null variables are skipped;
  /// of a name that comes twice the first counts.
  static AString BuildVariationKey(std::vector<Variable *> const & variables, VariableValues const * values = nullptr);
  /// The pairs of a text, completed by the variables that it lacks.  A text that is no variation text comes back as
  /// it is.
  static AString BuildCompleteVariationKey(AString const & variation, std::vector<Variable *> const & variables,
                                           VariableValues const * values = nullptr);

private:
  std::vector<Entry>::iterator LowerBound(AString const & name);

  std::vector<Entry> m_entries;
  AString m_opaqueText;
};
