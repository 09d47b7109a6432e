#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace bench {

struct SourceSize {
  std::string folder;
  std::size_t variations = 0;
  std::size_t frequencies = 0;
};

/// Solved data that traces are updated from, and what it takes to get at the same numbers without them.
class ISource {
public:
  virtual ~ISource() = default;
  /// Axis and complex numbers of all variations behind each other, as a trace has them.
  virtual double SecondsOfCopy() = 0;
  /// A new report, complex or in decibels, of data that nothing has read yet.
  virtual void Prepare(bool isComplex) = 0;
  /// Seconds of the update of that report.
  virtual double Update() = 0;
  /// That the trace has all numbers and the last of them is right.
  virtual void Check() = 0;
};

std::unique_ptr<ISource> DataInMemory(SourceSize const & size);
/// Of the circuit product, in a saved library; the copy decodes the same blocks.
std::unique_ptr<ISource> DataInLibrary(SourceSize const & size);

} // namespace bench
