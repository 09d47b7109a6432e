#pragma once

#include "basekit/value/expression/Program.h"

#include <vector>

class Trace;
class TraceComponent;
class VariationSamples;

/// Appends values to one trace, its expressions evaluated column by column.  A trace or component of a class of its own
/// is asked point by point.
class TraceFiller {
public:
  explicit TraceFiller(Trace & trace);
  bool HasComponents() const { return !m_parts.empty(); }

  /// The values at the samples of the present run: one value when no expression runs over them.
  void AppendRun(VariationSamples const & samples, std::size_t count);
  void AppendMissing();
  /// Makes room for so many values.
  void Reserve(double count);

private:
  struct Part {
    TraceComponent * component = nullptr;
    expr::Result result;
    bool isThere = false;
  };

  static bool Evaluate(Part & part, VariationSamples const & samples, std::size_t count);
  static void Append(Part const & part, std::size_t count);

  Trace * m_trace;
  std::vector<Part> m_parts;
  bool m_isByColumn = true;
};
