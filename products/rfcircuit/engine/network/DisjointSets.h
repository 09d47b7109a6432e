#pragma once

#include <cstddef>
#include <numeric>
#include <vector>

namespace rf {

/** Which of n things hang together, as pairs are joined. */
class DisjointSets {
public:
  explicit DisjointSets(std::size_t count) : m_Parent(count) { std::iota(m_Parent.begin(), m_Parent.end(), 0); }

  int Root(int member) {
    while (Parent(member) != member) {
      Parent(member) = Parent(Parent(member));
      member = Parent(member);
    }
    return member;
  }

  bool Together(int left, int right) { return Root(left) == Root(right); }

  /** False when the two were together before. */
  bool Join(int left, int right) {
    int const from = Root(left);
    int const to = Root(right);
    Parent(from) = to;
    return from != to;
  }

private:
  int & Parent(int member) { return m_Parent[static_cast<std::size_t>(member)]; }

  std::vector<int> m_Parent;
};

} // namespace rf
