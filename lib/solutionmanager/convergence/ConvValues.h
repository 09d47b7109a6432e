#pragma once

#include <vector>

class ConvDef;
class ConvValue;

/// A row or a column of convergence values, which it owns.
class ConvValues {
public:
  using iterator = std::vector<ConvValue *>::const_iterator;
  using reverse_iterator = std::vector<ConvValue *>::const_reverse_iterator;

  ConvValues() = default;
  ConvValues(ConvValues const & other) { CopyFrom(other); }
  ConvValues & operator=(ConvValues const & other);
  ~ConvValues() { ClearData(0); }

  int size() const { return static_cast<int>(m_values.size()); }
  /// Null for an index that there is not.
  ConvValue const * GetValue(int index) const;
  iterator begin() const { return m_values.begin(); }
  iterator end() const { return m_values.end(); }
  reverse_iterator rbegin() const { return m_values.rbegin(); }
  reverse_iterator rend() const { return m_values.rend(); }
  /// Forgets the values without freeing them: they have found another owner.
  void clear() { m_values.clear(); }

  /// Takes ownership.
  void AddValue(ConvValue * value) { m_values.push_back(value); }
  /// Frees the values from the index on; those before it stay.
  void ClearData(int start);
  /// Appends the numbers up to the first value that is none, which makes the result false.
  bool GetValues(std::vector<double> & numbers) const;
  /// Appends copies of the other's values.
  void CopyFrom(ConvValues const & other);
  /// The same, the copies belonging to the column where its type is theirs.
  void CopyFrom(ConvValues const & other, ConvDef const & column);

private:
  std::vector<ConvValue *> m_values;
};
