#include "solutionmanager/address/VariationIDIndex.h"

#include "basekit/value/AComplex.h"
#include "basekit/value/VariableValues.h"
#include "basekit/value/variation/VariationKeyVariableServer.h"

namespace {

AComplex<double> const kRelativeTolerance(1e-14, 1e-14);
AComplex<double> const kAbsoluteTolerance(0.0, 0.0);

} // namespace

// The constructor that takes a manager stands with the manager, so that addresses need not know the model.

VariationIDIndex::VariationIDIndex(AString const & variation, long version, long variationID)
    : m_Variation(variation), m_VariationID(variationID), m_VersionID(version) {}

VariationIDIndex::VariationIDIndex(VariationIDIndex const & other)
    : m_Variation(other.m_Variation), m_VariationID(other.m_VariationID), m_VersionID(other.m_VersionID) {}

VariationIDIndex & VariationIDIndex::operator=(VariationIDIndex const & other) {
  if (this == &other)
    return *this;
  m_Variation = other.m_Variation;
  m_VariationID = other.m_VariationID;
  m_VersionID = other.m_VersionID;
  m_VariableValues.reset();
  m_VariableServer.reset();
  return *this;
}

VariationIDIndex::~VariationIDIndex() = default;

VariableValues const & VariationIDIndex::GetVariableValues() const {
  if (!m_VariableValues) {
    m_VariableValues = std::make_unique<VariableValues>();
    m_VariableServer = std::make_unique<VariationKeyVariableServer>(m_Variation);
    VariableValues::ResolveVariationKey(m_Variation, m_VariableServer.get(), *m_VariableValues, nullptr, true);
  }
  return *m_VariableValues;
}

int VariationIDIndex::CompareByValue(VariationIDIndex const & other) const {
  return VariableValues::ConstantCompare(GetVariableValues(), other.GetVariableValues(), kRelativeTolerance,
                                         kAbsoluteTolerance);
}

bool VariationIDIndex::operator<(VariationIDIndex const & other) const {
  if (m_VariationID != id::invalidID && other.m_VariationID != id::invalidID)
    return m_VariationID != other.m_VariationID ? m_VariationID < other.m_VariationID : m_VersionID < other.m_VersionID;
  if (m_Variation.CompareNoCase(other.m_Variation) != 0) {
    int const compared = CompareByValue(other);
    if (compared == 1 || compared == 2)
      return compared == 1;
  }
  return m_VersionID < other.m_VersionID;
}

bool VariationIDIndex::operator==(VariationIDIndex const & other) const {
  if (m_VariationID != id::invalidID && other.m_VariationID != id::invalidID)
    return m_VariationID == other.m_VariationID && m_VersionID == other.m_VersionID;
  return m_VersionID == other.m_VersionID && CompareByValue(other) == 0;
}
