#pragma once

#include "basekit/text/AString.h"
#include "bench/support/RunLoop.h"
#include "desktop/KitDesktop.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

class BaseSimDataExtractor;
class BaseSolution;
class BaseSolutionManager;
class SolutionPointSet;

namespace desktop {
class Session;
}

namespace bench {

/// A saved project of the circuit product: S(1,1) of one port over frequencies, at c = 1, 2, ..., in a library on disk.
/// An output variable is the level of it.  Its folder goes with it.
class StoredWorld {
public:
  static inline wchar_t const * const kVariable = L"level";

  StoredWorld(std::string const & folder, std::size_t variations, std::size_t frequencies);

  std::size_t Variations() const { return m_variations; }
  std::size_t Frequencies() const { return m_frequencies; }
  /// Variations count from 1.
  static AString VariationText(std::size_t variation);
  /// Real and imaginary parts behind each other.
  std::vector<double> NumbersOf(std::size_t variation) const;
  std::uint64_t BytesOnDisk() const;
  /// A session that only reads, with nothing of the solved data in memory.
  std::unique_ptr<desktop::Session> Open() const;

private:
  AString ProjectPath() const;

  desktop::KitDesktop m_kit;
  DataFolder m_folder;
  std::size_t m_variations;
  std::size_t m_frequencies;
};

BaseSolution & SolutionOf(desktop::Session & session);
BaseSimDataExtractor & ExtractorOf(desktop::Session & session);
/// A set over all variations and frequencies with one trace over F.
SolutionPointSet & AddReport(desktop::Session & session, wchar_t const * y);

} // namespace bench
