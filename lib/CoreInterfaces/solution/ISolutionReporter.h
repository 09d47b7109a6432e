#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

#include <vector>

class IDesignDataExtractor;
class ISimDataExtractor;

/// The report types of a design and the extractors that serve them.
class ISolutionReporter {
public:
  virtual int GetInterfaceID() const = 0;
  virtual void * GetInterface(int interfaceID) = 0;
  /// The list operations append and return the vector's size.
  virtual int GetReportTypeNames(std::vector<AString> & names) const = 0;
  virtual unsigned GetReportType(AString const & name) const = 0;
  virtual int GetDisplayTypes(std::vector<rep::DisplayType> & types, unsigned reportType) const = 0;
  virtual int GetISimDataExtractors(std::vector<ISimDataExtractor *> & extractors, unsigned reportType,
                                    bool includeImported) const = 0;
  virtual int GetIDesignDataExtractors(std::vector<IDesignDataExtractor *> & extractors, unsigned reportType) const = 0;
  virtual void ModifyReporterTabs(IReporter & reporter) const = 0;
  virtual void Update(bool stampVersion, std::vector<SolutionPointSet *> * pointSets) = 0;
  virtual void MarkItDirty() = 0;
  virtual void GetAllTraceDescriptions(std::vector<AString> & descriptions) const = 0;

protected:
  ~ISolutionReporter() = default;
};
