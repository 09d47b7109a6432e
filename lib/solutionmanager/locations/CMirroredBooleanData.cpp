#include "solutionmanager/locations/CMirroredBooleanData.h"

CMirroredBooleanData::CMirroredBooleanData(IMirroredDataMapOwner * owner, AString const & blockName,
                                           AString const & functionKeyword, AString const & dataKeyword)
    : CMirroredData<long>(owner, blockName, functionKeyword, dataKeyword) {}

CMirroredBooleanData::CMirroredBooleanData(CMirroredBooleanData const & other) = default;
CMirroredBooleanData & CMirroredBooleanData::operator=(CMirroredBooleanData const & other) = default;
CMirroredBooleanData::~CMirroredBooleanData() = default;

void CMirroredBooleanData::SetData(VariationIDIndex const & key, bool value) {
  CMirroredData<long>::SetData(key, value ? 1 : 0);
}

bool CMirroredBooleanData::GetData(VariationIDIndex const & key) const {
  return CMirroredData<long>::GetData(key) == 1;
}
