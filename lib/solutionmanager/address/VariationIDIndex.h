#pragma once

#include "basekit/id/Id.h"
#include "basekit/text/AString.h"

#include <memory>

class BaseSolutionManager;
class VariableValues;
class VariationKeyVariableServer;

/// Key of all variation maps: ordered by variation ID, then version, so that all versions of one variation stand
/// together, oldest first.  Without an ID on both sides the order goes by text, then by the values that the texts
/// name; those are parsed once, on first demand.
class VariationIDIndex {
public:
  /// With a manager the variation's ID is looked up there, and issued when it is new; null is slow, not wrong.
  VariationIDIndex(AString const & variation, long version, BaseSolutionManager const * manager);
  VariationIDIndex(AString const & variation, long version, long variationID);
  VariationIDIndex(VariationIDIndex const & other);
  VariationIDIndex & operator=(VariationIDIndex const & other);
  virtual ~VariationIDIndex();

  AString GetVariation() const { return m_Variation; }
  long GetVersionID() const { return m_VersionID; }
  long GetVariationID() const { return m_VariationID; }
  VariableValues const & GetVariableValues() const;

  bool operator<(VariationIDIndex const & other) const;
  bool operator==(VariationIDIndex const & other) const;
  bool operator!=(VariationIDIndex const & other) const { return !(*this == other); }

private:
  int CompareByValue(VariationIDIndex const & other) const;

  AString m_Variation;
  long m_VariationID = id::invalidID;
  long m_VersionID;
  mutable std::unique_ptr<VariableValues> m_VariableValues;
  mutable std::unique_ptr<VariationKeyVariableServer> m_VariableServer;
};
