#pragma once

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IProductInfo.h"
#include "CoreInterfaces/desktop/IProject.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"

namespace bench {

/// The desktop's side of one design, as little of it as a solution manager needs: a folder and a name.
class PlainDesign : public IDesign, public IProductInfo, public IProject {
public:
  /// The folder ends with a slash and is made when it is needed.
  explicit PlainDesign(AString const & resultsFolder) : m_resultsFolder(resultsFolder) {}

  AString GetName() const override { return L"Design"; }
  long GetDesignID() const override { return 1; }
  IProject * GetIProject() const override { return const_cast<PlainDesign *>(this); }
  IProductInfo const * GetProductInfo() const override { return this; }
  AString GetProductName() const override { return L"Measured"; }
  IReportUpdateService * GetReportUpdateService() const override { return nullptr; }
  bool IsV2Design() const override { return false; }
  void GetDesignInstances(std::vector<IDesignInstance *> &) const override {}
  void NotifySolutionsChanged() override {}
  void NotifySolutionDataDeleted(long) override {}
  ISimValueManagerHost * GetSimValueManagerHost() const override { return nullptr; }
  ISimulationService * GetSimulationService() const override { return nullptr; }
  IDesignEditor * GetDesignEditor() const override { return nullptr; }
  void GetPropertyVariables(std::vector<Variable *> &) const override {}
  void GetFurtherVariables(std::vector<Variable *> &) const override {}
  IVariableServer * GetVariableServer() const override { return nullptr; }
  IVariableServer * GetProjectVariableServer() const override { return nullptr; }
  void GetDefaultVariableValues(VariableValues &) const override {}
  void SetupVariableNameSpace(VariableNameSpace &, bool) const override {}
  void SetupVNSForPostProcessing(VariableNameSpace &) const override {}

  void GetResultsFolder(LongFileName & folder, bool) const override { folder = LongFileName(m_resultsFolder); }
  bool CreateResultsFolder(LongFileName const & folder) override { return LFN_CreateDirectoryAndParents(folder); }
  bool HasUnsavedChanges() const override { return false; }

private:
  AString m_resultsFolder;
};

} // namespace bench
