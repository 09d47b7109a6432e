#pragma once

#include "plotkit/sweep/Subsweep.h"

/// Subsweeps in order, the outermost first.  It owns them; a copy has copies.
class SubsweepVector {
public:
  using iterator = std::vector<Subsweep *>::iterator;
  using const_iterator = std::vector<Subsweep *>::const_iterator;

  SubsweepVector() = default;
  SubsweepVector(SubsweepVector const & other);
  SubsweepVector(SubsweepVector && other) noexcept { m_subsweeps.swap(other.m_subsweeps); }
  SubsweepVector & operator=(SubsweepVector other) noexcept;
  ~SubsweepVector();

  /// Take ownership; null is ignored.
  void push_back(Subsweep * subsweep);
  iterator insert(const_iterator place, Subsweep * subsweep);

  iterator begin() { return m_subsweeps.begin(); }
  iterator end() { return m_subsweeps.end(); }
  const_iterator begin() const { return m_subsweeps.begin(); }
  const_iterator end() const { return m_subsweeps.end(); }
  std::size_t size() const { return m_subsweeps.size(); }
  bool empty() const { return m_subsweeps.empty(); }

  /// The same subsweeps in the same order.
  bool IsEqual(SubsweepVector const & other) const;

private:
  std::vector<Subsweep *> m_subsweeps;
};
