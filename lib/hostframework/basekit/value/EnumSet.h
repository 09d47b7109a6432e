#pragma once

namespace base {

/// A set of the first N enumerators of an enumeration, kept as bits; bits beyond N are dropped.
template <class Enum, int N> class EnumSet_T {
  static_assert(N > 0 && N < 32);

public:
  EnumSet_T() = default;
  explicit EnumSet_T(unsigned value) : m_value(value & ((1u << N) - 1)) {}

  EnumSet_T & Set(Enum flag, bool on = true) {
    unsigned const bit = 1u << static_cast<unsigned>(flag);
    return *this = EnumSet_T(on ? m_value | bit : m_value & ~bit);
  }
  bool Has(Enum flag) const { return (m_value >> static_cast<unsigned>(flag)) & 1u; }
  unsigned Value() const { return m_value; }

  friend bool operator==(EnumSet_T const & a, EnumSet_T const & b) = default;

private:
  unsigned m_value = 0;
};

} // namespace base
