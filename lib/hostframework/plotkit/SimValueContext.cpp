#include "plotkit/SimValueContext.h"

#include "CoreInterfaces/solution/IDesignDataExtractor.h"

int IDesignDataExtractor::GetCategoryNames(std::vector<AString> & names, unsigned reportType,
                                           rep::DisplayType displayType, SimValueContext const & context,
                                           AString const * filter) const {
  return GetCategoryNames(names, reportType, displayType, static_cast<int>(context.GetCalculationType()), filter);
}
