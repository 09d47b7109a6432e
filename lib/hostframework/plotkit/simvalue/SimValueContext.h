#pragma once

#include "CoreInterfaces/ReportForward.h"

#include "basekit/io/CBlock_func.h"

#include <array>

/// In which context a quantity is meant: the domain of its calculation, and numbers that a product's dialogs fill and
/// only the product reads.
class SimValueContext {
public:
  /// The context of texts that say none.
  SimValueContext() = default;
  SimValueContext(int kind, rep::CalculationType calculationType, unsigned first, unsigned second, double a, double b,
                  double c, double d)
      : m_kind(kind), m_calculationType(calculationType), m_first(first), m_second(second), m_numbers{a, b, c, d} {}
  /// Null gives the context of texts that say none.
  explicit SimValueContext(SimValueContext const * other) { Reset(other); }
  SimValueContext(SimValueContext const &) = default;
  SimValueContext & operator=(SimValueContext const &) = default;

  void Reset(SimValueContext const * other) { *this = other ? *other : SimValueContext(); }

  int GetKind() const { return m_kind; }
  /// The domain.
  rep::CalculationType GetCalculationType() const { return m_calculationType; }
  void SetCalculationType(rep::CalculationType type) { m_calculationType = type; }
  unsigned GetFirst() const { return m_first; }
  unsigned GetSecond() const { return m_second; }
  std::array<double, 4> const & GetNumbers() const { return m_numbers; }

  /// Eight arguments of a function from the place on; false, and nothing changed, when they are not there.
  bool ReadFrom(io::CBlock_func const & func, io::CBlock_func::iterator & place);
  void WriteTo(io::CBlock_func & func) const;

  friend bool operator==(SimValueContext const & a, SimValueContext const & b) = default;

private:
  int m_kind = 3;
  rep::CalculationType m_calculationType{};
  unsigned m_first = 2;
  unsigned m_second = 0;
  std::array<double, 4> m_numbers{1.0, 1.0, 0.0, 0.0};
};
