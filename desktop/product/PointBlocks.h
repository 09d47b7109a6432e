#pragma once

#include "basekit/text/AString.h"

#include <functional>
#include <vector>

class SolutionVariationKey;
namespace io {
class CBlock;
}

namespace desktop {

class ProductSolutionManager;

/// One design point's part of a solution library: the variation that the manager's export context names.  While that
/// stands definition blocks come out cut down to it; the name map is loaded.
class PointBlocks {
public:
  explicit PointBlocks(ProductSolutionManager const & manager);

  /// The header and the definition blocks, those of solutions of former versions too, as they are to stand in the
  /// export.
  /// False when one can't be read.
  bool AddDefinitions(io::CBlock & blocks) const;
  /// Beside them all else that the export holds: what belongs to the point, and what belongs to no point.  False when
  /// one can't be read.
  bool AddAll(io::CBlock & blocks) const;
  /// What belongs to other points, and to setups and solutions that are gone: real names.
  std::vector<AString> NamesOfOthers() const;
  /// What belongs to the point: real names.
  std::vector<AString> NamesOfPoint() const;

private:
  enum class Owner { kPoint, kOtherPoint, kNobody, kDefinition, kGone };
  Owner OwnerOf(AString const & name, SolutionVariationKey const & key) const;
  bool IsThere(SolutionVariationKey const & key) const;
  template <class Take> void ForEachBlock(Take take) const;
  bool IsOfPoint(AString const & variation) const;
  /// A definition as the model has it now.
  struct Written {
    AString name;
    std::function<bool(io::CBlock & block)> write;
  };
  std::vector<Written> WrittenAnew() const;
  static bool Has(std::vector<Written> const & written, AString const & name);
  bool AddFormer(AString const & name, io::CBlock & blocks) const;
  bool AddStored(AString const & name, io::CBlock & blocks) const;

  ProductSolutionManager const & m_manager;
  AString m_variation;
  long m_variationID;
  mutable AString m_lastText;
  mutable bool m_isLastOfPoint = false;
};

} // namespace desktop
