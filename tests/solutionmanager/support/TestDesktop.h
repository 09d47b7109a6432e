#pragma once

#include "CoreInterfaces/IVariableServer.h"
#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IDesignEditor.h"
#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "CoreInterfaces/desktop/IKitDesktop.h"
#include "CoreInterfaces/desktop/IProductInfo.h"
#include "CoreInterfaces/desktop/IProject.h"
#include "CoreInterfaces/desktop/ISimulationService.h"
#include "basekit/message/KelvroMessage.h"
#include "basekit/message/MessageManager.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "tests/support/TemporaryFolder.h"

#include <set>

namespace support {

/// A desktop of one project with one design, over a real folder.  What the library asks of it is answered plainly, and
/// what the library tells it is counted.
class TestProject : public IProject {
public:
  explicit TestProject(AString const & folder) : resultsFolder(folder) {}
  AString GetName() const override { return L"Project"; }
  void GetResultsFolder(LongFileName & folder, bool forWriting) const override;
  bool CreateResultsFolder(LongFileName const & folder) override;
  bool HasUnsavedChanges() const override { return hasUnsavedChanges; }

  AString resultsFolder;
  bool hasUnsavedChanges = false;
};

class TestDesign;

class TestInstance : public IDesignInstance {
public:
  TestInstance(TestDesign & design, AString const & variation, long id = 7)
      : m_design(design), m_variation(variation), m_id(id) {}
  void SetVariation(AString const & variation) { m_variation = variation; }
  long GetID() const override { return m_id; }
  IDesign * GetIDesign() const override;
  AString GetVariationKey() const override { return m_variation; }
  void GetNominalVariableValues(VariableValues & values, bool withPostProcessing) const override;
  ISimulationService * GetSimulationService() const override;

  /// What only post processing knows of the instance, as a variation text.
  AString postProcessingVariation;

private:
  TestDesign & m_design;
  AString m_variation;
  long m_id;
};

class TestService : public ISimulationService {
public:
  int IsSolutionSolving(IDesignInstance *, long, std::vector<long> const & solutionIDs) override;
  int IsSetupSolving(IDesignInstance *, long) override { return solving ? 1 : 0; }
  bool SubmitSolve(IDesignInstance *, std::vector<SolutionVariationKey> const & keys, void const *, void const *,
                   long const * parentID, int, int, AString const &, long a, long b) override;

  bool solving = false;
  bool accepts = true;
  std::vector<SolutionVariationKey> submitted;
  std::vector<long> asked;
  long parent = 0;
  long lastA = 0;
  long lastB = 0;
};

/// Variables by name, which the test owns.
class TestVariables : public IVariableServer {
public:
  Variable * ResolveVariable(AString const & name) const override;

  std::vector<Variable *> variables;
};

class TestDesign : public IDesign, public IProductInfo, public IDesignEditor {
public:
  explicit TestDesign(AString const & resultsFolder) : project(resultsFolder) {}

  AString GetName() const override { return name; }
  long GetDesignID() const override { return designID; }
  IProject * GetIProject() const override { return hasProject ? const_cast<TestProject *>(&project) : nullptr; }
  IProductInfo const * GetProductInfo() const override { return this; }
  AString GetProductName() const override { return L"TestProduct"; }
  IReportUpdateService * GetReportUpdateService() const override { return reportUpdateService; }
  bool IsV2Design() const override { return isV2; }
  void GetDesignInstances(std::vector<IDesignInstance *> & instances) const override;
  void NotifySolutionsChanged() override { ++changes; }
  void NotifySolutionDataDeleted(long) override { ++deletions; }
  ISimValueManagerHost * GetSimValueManagerHost() const override { return simValueManagerHost; }
  ISimulationService * GetSimulationService() const override { return const_cast<TestService *>(&service); }
  IDesignEditor * GetDesignEditor() const override { return const_cast<TestDesign *>(this); }
  void GetPropertyVariables(std::vector<Variable *> & variables) const override;
  void GetFurtherVariables(std::vector<Variable *> &) const override {}
  IVariableServer * GetVariableServer() const override { return const_cast<TestVariables *>(&ownVariables); }
  IVariableServer * GetProjectVariableServer() const override { return const_cast<TestVariables *>(&projectVariables); }
  void GetDefaultVariableValues(VariableValues &) const override {}
  void SetupVariableNameSpace(VariableNameSpace & nameSpace, bool forPostProcessing) const override;
  void SetupVNSForPostProcessing(VariableNameSpace &) const override { nameSpaceCalls.push_back(L"postprocessing"); }

  AString name = L"Design";
  long designID = 3;
  TestProject project;
  bool hasProject = true;
  bool isV2 = false;
  IReportUpdateService * reportUpdateService = nullptr;
  TestService service;
  int changes = 0;
  int deletions = 0;
  TestVariables ownVariables;
  TestVariables projectVariables;
  std::vector<IDesignInstance *> ownInstances;
  ISimValueManagerHost * simValueManagerHost = nullptr;
  mutable std::vector<AString> nameSpaceCalls;
};

/// The desktop itself, installed for its life; messages are kept by number with their first argument.
class TestKitDesktop : public IKitDesktop, public IMessageListener {
public:
  TestKitDesktop();
  ~TestKitDesktop() override;
  bool IsReportRewriteEnabled() const override { return rewrite; }
  bool UsesPostProcessingVariables() const override { return usesPostProcessingVariables; }
  MessageManager & GetMessageManager() override { return m_messages; }
  void OnMessage(KelvroMessage const & message) override;

  bool rewrite = false;
  bool usesPostProcessingVariables = false;
  std::vector<std::pair<long, AString>> posted;
  std::vector<KelvroMessage::Severity> severities;

private:
  MessageManager m_messages;
  IKitDesktop * m_former;
};

} // namespace support
