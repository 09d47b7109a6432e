#pragma once

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/ISimValueManager.h"
#include "plotkit/simvalue/DatasetValue.h"
#include "plotkit/simvalue/SimValueContext.h"

#include <map>
#include <memory>
#include <vector>

namespace desktop {

/// The dynamic datasets of a design, by solution: equal questions have the same answer for as long as both values live.
class SimValueManager : public ISimValueManager, public ISimValueManagerHost {
public:
  ISimValueManager * GetISimValueManager() override { return this; }
  void ReleaseSimValues(long solutionID, bool all) override;
  ValueBase * GetDynamicDatasetValue(long solutionID, SimValueContext const & context, ValueBase const * first,
                                     ValueBase const * second) override;
  ValueBase * GetDynamicDatasetValueForValidation(ValueState const & first, ValueState const & second) override;

  std::size_t GetDatasetCount(long solutionID) const;

private:
  struct Dataset {
    SimValueContext context;
    std::unique_ptr<DatasetValue> value;
  };

  std::map<long, std::vector<Dataset>> m_datasets;
  /// One for each state that a dataset can have.
  std::vector<std::unique_ptr<DatasetValue>> m_validationDatasets;
};

} // namespace desktop
