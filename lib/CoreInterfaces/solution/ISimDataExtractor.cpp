#include "CoreInterfaces/solution/ISimDataExtractor.h"

#include "basekit/diag/Assert.h"

bool ISimDataExtractor::HasExtractorOption(int) const { return false; }

SweepBase * ISimDataExtractor::GetSweep(AString const &, SimValueContext const *, unsigned) { return nullptr; }

SweepBase * ISimDataExtractor::GetSweep(AString const &) const { return nullptr; }

Sweep * ISimDataExtractor::GetSpecialSweep(AString const &) const { return nullptr; }

bool ISimDataExtractor::SimHookH() const {
  KVRO_ASSERT(0);
  return false;
}

bool ISimDataExtractor::SimHookI() const {
  KVRO_ASSERT(0);
  return false;
}

ISimDataExtractor3 * ISimDataExtractor::GetISimDataExtractor3() {
  KVRO_ASSERT(0);
  return nullptr;
}

IDesignDataExtractorForReportSetupUI const * ISimDataExtractor::GetIDesignDataExtractorForReportSetupUI() const {
  KVRO_ASSERT(0);
  return nullptr;
}

IDesignDataExtractorForReportSetupUI * ISimDataExtractor::GetIDesignDataExtractorForReportSetupUIForEdit() {
  KVRO_ASSERT(0);
  return nullptr;
}
