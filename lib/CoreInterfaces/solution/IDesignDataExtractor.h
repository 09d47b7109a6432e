#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

#include <vector>

class CParsedExpressionCache;
class ISolutionMgr;
class IValueParser;
struct ValueState;

/// Quantities, variables and sweeps of a design's data, as reports ask for them.  Lists are appended to where nothing
/// else is said, and their size is returned.  The hooks are places for products; nothing calls them here.
class IDesignDataExtractor {
public:
  virtual IValueParser * GetIValueParser() = 0;
  virtual ISolutionMgr * GetISolutionMgr() const = 0;
  virtual AString GetName() const = 0;
  virtual bool IsSupportedReportTypes(std::vector<unsigned> const & reportTypes) const = 0;
  virtual int GetSweeps(std::vector<SweepBase *> & sweeps, unsigned reportType, SimValueContext const * context,
                        rep::DisplayType displayType, bool flag) const = 0;
  virtual bool DesignHookA() const { return true; }
  /// Asks for the categories of the context's domain.
  virtual int GetCategoryNames(std::vector<AString> & names, unsigned reportType, rep::DisplayType displayType,
                               SimValueContext const & context, AString const * filter) const;
  virtual int GetCategoryNames(std::vector<AString> & names, unsigned reportType, rep::DisplayType displayType,
                               int domain, AString const * filter) const;
  virtual int GetMatrixQuantityNames(std::vector<AString> & names, AString const & category, unsigned reportType,
                                     rep::DisplayType displayType, SimValueContext const & context) const = 0;
  virtual int GetQuantityNames(std::vector<AString> & names, AString const & category, unsigned reportType,
                               rep::DisplayType displayType, SimValueContext const & context) const = 0;
  virtual int GetAllQuantityNamesForAllContextsGivenDomain(std::vector<AString> & names, AString const & category,
                                                           unsigned reportType, rep::DisplayType displayType,
                                                           int domain) const;
  virtual bool QuantityNeedsContext(AString const & quantity) const;
  virtual int GetFunctionNames(std::vector<AString> & names, ValueState const & state, unsigned reportType,
                               rep::DisplayType displayType) const = 0;
  virtual ValueState GetQuantityType(AString const & text, int domain) const = 0;
  virtual bool DesignHookB() const { return false; }
  virtual int DesignHookC() const { return 0; }
  virtual bool DesignHookD() const { return false; }
  virtual int DesignHookE() const { return 0; }
  virtual int GetVariables(std::vector<Variable *> & variables, unsigned reportType,
                           SimValueContext const * context) const = 0;
  virtual bool DesignHookF() const { return false; }
  virtual bool DesignHookG() const { return false; }
  virtual void SetSimValueContext(SimValueContext const * context) = 0;
  virtual bool HasContexts(unsigned reportType) const = 0;
  virtual AString GetContextUILabel(unsigned reportType) const = 0;
  /// Replaces the list; false when there are no contexts to choose from.
  virtual bool GetContexts(std::vector<SimValueContext> & contexts, unsigned reportType) const = 0;
  virtual bool DesignHookH() const { return true; }
  virtual long GetContextID(SimValueContext const & context) const = 0;
  virtual AString GetContextName(SimValueContext const & context) const = 0;
  virtual void DesignHookI() {}
  virtual bool IsExpressionAffectedByMinorEdits(KelvroCommand const * command, AString const & expression) const;
  virtual bool IsSimContextDataAffectedByMinorEdits(KelvroCommand const * command, SimValueContext const * context,
                                                    unsigned reportType) const;
  virtual bool DesignHookJ() const { return false; }
  virtual ~IDesignDataExtractor();
};
