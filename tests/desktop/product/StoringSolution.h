#pragma once

#include "desktop/product/ResultStoreOwner.h"
#include "solutionmanager/locations/CMirroredData.h"
#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "solutionmanager/locations/CMirroredLocationData.h"
#include "solutionmanager/model/BaseSolution.h"

namespace support {

/// A solution with a store of each kind.
class StoringSolution : public BaseSolution, public desktop::ResultStoreOwner {
public:
  StoringSolution(BaseSimulationSetup const & setup, long id, long version)
      : BaseSolution(setup, id, version), ResultStoreOwner(static_cast<BaseSolution &>(*this)) {
    AddStore(L"Plots", L".txt", plots);
    AddStore(L"Fields", L".csv", fields);
    AddStore(L"Passes", passes);
  }

  CMirroredLocationData plots{this, L"PlotFiles", L"Plots", L"Path", true};
  CMirroredDoubleMapLocationData fields{this, L"FieldFiles", L"Fields", L"Path", true};
  CMirroredData<long> passes{this, L"PassCounts", L"Passes", L"Count"};
};

} // namespace support
