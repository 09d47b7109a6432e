#pragma once

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IDesignEditor.h"
#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "CoreInterfaces/desktop/IProductInfo.h"

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace io {
class CBlock;
}

namespace desktop {

class Design;
class Project;
class SimValueManager;

/// One setting of a design's variables, by its variation text.
class DesignInstance : public IDesignInstance {
public:
  DesignInstance(Design & design, long id, AString const & variation);
  /// The nominal instance: its variation follows the design's variables.
  DesignInstance(Design & design, long id);
  long GetID() const override { return m_id; }
  IDesign * GetIDesign() const override;
  AString GetVariationKey() const override;
  /// All of them always: no variable is for post processing alone.
  void GetNominalVariableValues(VariableValues & values, bool withPostProcessing = false) const override;
  ISimulationService * GetSimulationService() const override;

private:
  Design & m_design;
  long m_id;
  std::optional<AString> m_variation;
};

/// A design of this desktop: name, variables, instances.  The first instance is the nominal one, whose variation
/// follows the variables.
class Design : public IDesign, public IDesignEditor {
public:
  Design(Project & project, AString const & name, long designID, AString const & productName);
  ~Design() override;

  // IDesign, IDesignEditor
  AString GetName() const override { return m_name; }
  long GetDesignID() const override { return m_designID; }
  IProject * GetIProject() const override;
  IProductInfo const * GetProductInfo() const override;
  IReportUpdateService * GetReportUpdateService() const override { return nullptr; }
  bool IsV2Design() const override { return false; }
  void GetDesignInstances(std::vector<IDesignInstance *> & instances) const override;
  void NotifySolutionsChanged() override;
  void NotifySolutionDataDeleted(long solutionID) override;
  ISimValueManagerHost * GetSimValueManagerHost() const override;
  ISimulationService * GetSimulationService() const override { return m_simulationService; }
  IDesignEditor * GetDesignEditor() const override { return const_cast<Design *>(this); }
  void GetPropertyVariables(std::vector<Variable *> & variables) const override;
  void GetFurtherVariables(std::vector<Variable *> &) const override {}
  IVariableServer * GetVariableServer() const override;
  IVariableServer * GetProjectVariableServer() const override { return nullptr; }
  void GetDefaultVariableValues(VariableValues & values) const override;
  void SetupVariableNameSpace(VariableNameSpace & nameSpace, bool forPostProcessing) const override;
  void SetupVNSForPostProcessing(VariableNameSpace & nameSpace) const override;

  /// Not owned; null when nothing can be solved.
  void SetSimulationService(ISimulationService * service) { m_simulationService = service; }

  // Variables, in the order in which they were added
  void AddVariable(AString const & name, AString const & value);
  using Variables = std::vector<std::unique_ptr<Variable>>;
  /// Gives the design other variables, and the caller those that it had.  One that stays under its name stays the same
  /// object, with another value, for whoever refers to it.
  void ExchangeVariables(Variables & variables);
  /// Null when the design has none of that name; case does not count.
  Variable * FindVariable(AString const & name) const;
  std::vector<Variable *> GetVariables() const;
  /// The variation text of the variables as they are, with some values replaced.
  AString GetVariation(std::vector<std::pair<AString, AString>> const & replaced = {}) const;

  DesignInstance & NominalInstance() { return m_nominal; }
  /// An instance for one variation, owned by the design; the same object for the same text.
  DesignInstance & InstanceFor(AString const & variation);

  /// Item: block "Variables".  The manager's blocks are not part of this.
  void Write(io::CBlock & block) const;
  /// Takes the place of all variables; false, and nothing changed, when the block is not what Write made.
  bool Read(io::CBlock const & block);

private:
  class VariableServer;
  class ProductInfo;

  Project & m_project;
  AString m_name;
  long m_designID;
  std::unique_ptr<ProductInfo> m_productInfo;
  std::unique_ptr<VariableServer> m_variableServer;
  std::unique_ptr<SimValueManager> m_simValueManager;
  Variables m_variables;
  DesignInstance m_nominal;
  /// By variation text; a study queues an instance for each of its points.
  std::map<AString, DesignInstance> m_instances;
  ISimulationService * m_simulationService = nullptr;
};

} // namespace desktop
