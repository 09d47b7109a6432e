#include "CoreInterfaces/solution/IDesignDataExtractor.h"

#include "CoreInterfaces/solution/ISolutionMgr.h"
#include "basekit/diag/Assert.h"

// The default that looks into a context stands with contexts: interfaces know report objects by name alone.

IDesignDataExtractor::~IDesignDataExtractor() = default;

int IDesignDataExtractor::GetCategoryNames(std::vector<AString> &, unsigned, rep::DisplayType, int,
                                           AString const *) const {
  KVRO_ASSERT(0);
  return 0;
}

int IDesignDataExtractor::GetAllQuantityNamesForAllContextsGivenDomain(std::vector<AString> &, AString const &,
                                                                       unsigned, rep::DisplayType, int) const {
  return 0;
}

bool IDesignDataExtractor::QuantityNeedsContext(AString const &) const { return false; }

bool IDesignDataExtractor::IsExpressionAffectedByMinorEdits(KelvroCommand const * command,
                                                            AString const & expression) const {
  ISolutionMgr const * const manager = GetISolutionMgr();
  return manager && manager->IsExpressionAffectedByMinorEdits(command, expression);
}

bool IDesignDataExtractor::IsSimContextDataAffectedByMinorEdits(KelvroCommand const * command,
                                                                SimValueContext const * context,
                                                                unsigned reportType) const {
  ISolutionMgr const * const manager = GetISolutionMgr();
  return manager && manager->IsSimContextDataAffectedByMinorEdits(command, context, reportType);
}
