#pragma once

#include "solutionmanager/locations/CMirroredData.h"

/// A flag for each variation and version: a stored 1 is true, everything else false.
class CMirroredBooleanData : public CMirroredData<long> {
public:
  CMirroredBooleanData(IMirroredDataMapOwner * owner, AString const & blockName, AString const & functionKeyword,
                       AString const & dataKeyword);
  CMirroredBooleanData(CMirroredBooleanData const & other);
  CMirroredBooleanData & operator=(CMirroredBooleanData const & other);
  ~CMirroredBooleanData() override;

  void SetData(VariationIDIndex const & key, bool value);
  bool GetData(VariationIDIndex const & key) const;
};
