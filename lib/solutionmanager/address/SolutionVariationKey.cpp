#include "solutionmanager/address/SolutionVariationKey.h"

#include "basekit/id/Id.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/CBlock_named_value.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/io/CQuery_ok_manip.h"
#include "basekit/value/VariableValues.h"

static_assert(id::invalidID == -1, "patterns test for -1");

AString const SolutionVariationKey::kSimSetupDefinitionKey(L"SetupDefinition");
AString const SolutionVariationKey::kSolutionDefinitionKey(L"SolutionDefinition");
AString const SolutionVariationKey::kSolDataKeyInfo(L"SolutionKey");
AString const SolutionVariationKey::kSimSetupKey(L"SimSetup");
AString const SolutionVariationKey::kDesignVariationKey(L"Instance");
AString const SolutionVariationKey::kSolutionKey(L"Solution");
AString const SolutionVariationKey::kVersionIDKey(L"VersionID");

namespace {

AString const & NotSet() {
  static AString const text(L"NotSet");
  return text;
}

} // namespace

SolutionVariationKey::SolutionVariationKey()
    : SolutionVariationKey(id::invalidID, NotSet(), id::invalidID, id::invalidID) {}

SolutionVariationKey::SolutionVariationKey(long simSetup, AString const & designVariation, long solution, long version)
    : m_simSetupKey(simSetup), m_designVariationKey(designVariation), m_solutionKey(solution), m_versionIDKey(version) {
}

SolutionVariationKey::SolutionVariationKey(SolutionVariationKey const & other) = default;

SolutionVariationKey & SolutionVariationKey::operator=(SolutionVariationKey const & other) = default;

SolutionVariationKey::~SolutionVariationKey() = default;

AString SolutionVariationKey::GetItemName() const { return kSolDataKeyInfo; }

io::CBlock_ptr<io::CBlock_item> SolutionVariationKey::BlockItem() const {
  auto * item = new io::CBlock_func(GetItemName());
  io::CBlock_ptr<io::CBlock_item> owner(item);
  *item << io::CBlock_named_value(kSimSetupKey, m_simSetupKey)
        << io::CBlock_named_value(kDesignVariationKey, m_designVariationKey)
        << io::CBlock_named_value(kSolutionKey, m_solutionKey) << io::CBlock_named_value(kVersionIDKey, m_versionIDKey);
  return owner;
}

bool SolutionVariationKey::BlockItem(io::CBlock_ptr<io::CBlock_item> const & item) {
  io::CBlock_ptr<io::CBlock_func> func(item);
  if (!func.Item())
    return false;
  // One flag over all four reads: the verdict is that of the last query.
  bool ok = false;
  *func >> io::named(kSimSetupKey, m_simSetupKey) >> io::CQuery_ok_manip(ok);
  *func >> io::named(kDesignVariationKey, m_designVariationKey) >> io::CQuery_ok_manip(ok);
  *func >> io::named(kSolutionKey, m_solutionKey) >> io::CQuery_ok_manip(ok);
  *func >> io::named(kVersionIDKey, m_versionIDKey) >> io::CQuery_ok_manip(ok);
  return ok;
}

bool SolutionVariationKey::IsSimSetupDefinitionKey() const {
  return m_designVariationKey.Compare(kSimSetupDefinitionKey) == 0;
}

bool SolutionVariationKey::IsSolutionDefinitionKey() const {
  return m_designVariationKey.Compare(kSolutionDefinitionKey) == 0;
}

bool SolutionVariationKey::IsValidSolutionKey() const {
  return m_solutionKey != kProfileDataKey && m_solutionKey != kConvDataKey && !IsSimSetupDefinitionKey();
}

bool SolutionVariationKey::IsValidVariationDataKey() const {
  return IsValidSolutionKey() && !IsSolutionDefinitionKey();
}

namespace {

bool SameVariation(SolutionVariationKey const & a, SolutionVariationKey const & b) {
  if (a.IsValidVariationDataKey() && b.IsValidVariationDataKey())
    return VariableValues::AreVariationKeysEqual(a.GetDesignVariationKey(), b.GetDesignVariationKey());
  return a.GetDesignVariationKey().CompareNoCase(b.GetDesignVariationKey()) == 0;
}

} // namespace

bool SolutionVariationKey::Match(SolutionVariationKey const & pattern) const {
  if (pattern.m_simSetupKey != -1 && pattern.m_simSetupKey != m_simSetupKey)
    return false;
  // The numbers are compared before the texts: same verdict, and most keys are told apart without reading a text.
  if (pattern.m_solutionKey != -1 && pattern.m_solutionKey != m_solutionKey)
    return false;
  if (pattern.m_versionIDKey != -1 && pattern.m_versionIDKey != m_versionIDKey)
    return false;
  return pattern.m_designVariationKey == NotSet() || SameVariation(*this, pattern);
}

bool SolutionVariationKey::operator==(SolutionVariationKey const & other) const {
  return m_simSetupKey == other.m_simSetupKey && m_solutionKey == other.m_solutionKey &&
         m_versionIDKey == other.m_versionIDKey && SameVariation(*this, other);
}

bool SolutionVariationKey::GetValueString(AString const & variable, AString & value) const {
  return !m_designVariationKey.empty() && GetValueString(m_designVariationKey, variable, value);
}

bool SolutionVariationKey::GetValueString(AString const & variable, AComplex<double> & value, bool & isComplex) const {
  return !m_designVariationKey.empty() && GetValueString(m_designVariationKey, variable, value, isComplex);
}

bool SolutionVariationKey::GetValueString(AString const & variation, AString const & variable, AString & value) {
  return VariableValues::GetValueString(variation, variable, value);
}

bool SolutionVariationKey::GetValueString(AString const & variation, AString const & variable, AComplex<double> & value,
                                          bool & isComplex) {
  return VariableValues::GetValueString(variation, variable, value, isComplex);
}

AString SolutionVariationKey::BuildVariationKey(std::vector<Variable *> const & variables) {
  return VariableValues::BuildVariationKey(variables, nullptr);
}

AString SolutionVariationKey::BuildCompleteVariationKey(AString const & variation,
                                                        std::vector<Variable *> const & variables) {
  return VariableValues::BuildCompleteVariationKey(variation, variables, nullptr);
}
