#pragma once

#include "basekit/io/CStreamio_item_object.h"
#include "basekit/text/AString.h"
#include "basekit/value/AComplex.h"

#include <vector>

class Variable;

/// The address of a block of the solution library: which setup, which design variation, which solution, which version.
/// Its packed text is the block's real name.  As an argument of Match it is a search pattern, in which -1 and "NotSet"
/// stand for anything.
class SolutionVariationKey : public io::CStreamio_item_object {
public:
  static constexpr long kProfileDataKey = -2;
  static constexpr long kConvDataKey = -3;
  static AString const kSimSetupDefinitionKey;
  static AString const kSolutionDefinitionKey;

  SolutionVariationKey();
  SolutionVariationKey(long simSetup, AString const & designVariation, long solution, long version);
  SolutionVariationKey(SolutionVariationKey const & other);
  SolutionVariationKey & operator=(SolutionVariationKey const & other);
  ~SolutionVariationKey() override;

  AString GetItemName() const override;
  io::CBlock_ptr<io::CBlock_item> BlockItem() const override;
  bool BlockItem(io::CBlock_ptr<io::CBlock_item> const & item) override;

  long GetSimSetupKey() const { return m_simSetupKey; }
  void SetSimSetupKey(long key) { m_simSetupKey = key; }
  AString GetDesignVariationKey() const { return m_designVariationKey; }
  void SetDesignVariationKey(AString const & key) { m_designVariationKey = key; }
  long GetSolutionKey() const { return m_solutionKey; }
  void SetSolutionKey(long key) { m_solutionKey = key; }
  long GetVersionIDKey() const { return m_versionIDKey; }
  void SetVersionIDKey(long key) { m_versionIDKey = key; }

  bool IsSimSetupDefinitionKey() const;
  bool IsSolutionDefinitionKey() const;
  /// The key of a solution's block, its definition included.
  bool IsValidSolutionKey() const;
  bool IsValidVariationDataKey() const;

  /// Whether this stored key fits the pattern; wildcards count in the pattern only.
  bool Match(SolutionVariationKey const & pattern) const;
  bool operator==(SolutionVariationKey const & other) const;

  /// The value of a variable of this key's variation; false, with the output unchanged, when there is none.
  bool GetValueString(AString const & variable, AString & value) const;
  bool GetValueString(AString const & variable, AComplex<double> & value, bool & isComplex) const;
  static bool GetValueString(AString const & variation, AString const & variable, AString & value);
  static bool GetValueString(AString const & variation, AString const & variable, AComplex<double> & value,
                             bool & isComplex);
  static AString BuildVariationKey(std::vector<Variable *> const & variables);
  static AString BuildCompleteVariationKey(AString const & variation, std::vector<Variable *> const & variables);

private:
  static AString const kSolDataKeyInfo;
  static AString const kSimSetupKey;
  static AString const kDesignVariationKey;
  static AString const kSolutionKey;
  static AString const kVersionIDKey;

  long m_simSetupKey;
  AString m_designVariationKey;
  long m_solutionKey;
  long m_versionIDKey;
};
