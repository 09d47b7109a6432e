#pragma once

#include <string>

namespace bench {

/// scikit-rf, an independent reader of Touchstone files in Python, as a referee of speed.
class Reference {
public:
  struct Reading {
    /// Of processor time, from the file's name to S-parameters; starting Python doesn't count.
    double seconds = 0;
    std::size_t points = 0;
    double lastFrequency = 0;
    /// The real part of the last element of the last matrix.
    double lastValue = 0;
  };

  /// Looks for a Python that has it: the first one of the path, then Debian's own, which its packages belong to.
  Reference();

  bool IsThere() const { return !m_python.empty(); }
  /// In a process of its own.
  Reading Read(std::string const & path) const;

private:
  std::string m_python;
};

} // namespace bench
