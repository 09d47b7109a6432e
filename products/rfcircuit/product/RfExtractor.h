#pragma once

#include "desktop/product/quantity/QuantityExtractor.h"

namespace rfcircuit {

struct NetworkLayout;

/// The report side's door to one S-parameter solution: network parameters over frequency with the ports as their
/// settings say, and node voltages where they are stored.
class RfExtractor : public desktop::QuantityExtractor {
public:
  using QuantityExtractor::QuantityExtractor;

  /// Ports and nodes as known from what is solved.
  NetworkLayout const & GetLayout() const;

  /// Figures that engineers want of a two-port, and losses: see CannedExpressions.
  bool GetExpressionForCannedOutputVariable(AString const & name, AString & expression,
                                            ValueState & state) const override;

protected:
  std::unique_ptr<desktop::IQuantityCatalogue> MakeCatalogue(BaseSolutionVariation const * solved) const override;
  std::unique_ptr<desktop::ISolvedQuantities> OpenQuantities(BaseSolutionVariation const & solved) const override;
};

} // namespace rfcircuit
