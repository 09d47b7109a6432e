#include "CoreInterfaces/reportkern/ISolutionManagerForReports.h"

#include "basekit/diag/Assert.h"

int ISolutionManagerForReports::ReportsHookA() const {
  KVRO_ASSERT(0);
  return 0;
}

void ISolutionManagerForReports::ReportsHookC() const { KVRO_ASSERT(!ACHAR("Please override")); }
