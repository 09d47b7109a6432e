#include "solutionmanager/extraction/SolutionInstanceManager.h"
#include "CoreInterfaces/solution/ISimDataExtractor2.h"
#include "basekit/diag/IMemoryTimeProfiler.h"
#include "plotkit/simvalue/IContextedDerivedDataInstance.h"
#include "plotkit/simvalue/SolutionLoadDefinition.h"
#include "tests/solutionmanager/extraction/UpdateFixture.h"

using Texts = std::vector<AString>;

namespace {

class ProductDefinition : public IDerivedDataDefinition {
public:
  explicit ProductDefinition(int ownNumber) : number(ownNumber) {}
  IDerivedDataDefinition * Clone() const override { return new ProductDefinition(number); }

  int number;
};

class ProductInstance : public IContextedSolutionInstance {
public:
  long GetVersionID() const override { return 31; }
  IDerivedDataDefinition * GetDerivedDataDefinition() override { return new ProductDefinition(5); }
  void GetMajorVariableValues(VariableValues & values) const override { values.Set(L"x", Value::Real(3)); }
  bool LoadInstance(AutoVectorOfClonablePtrs<IExtendedLoadInfo> const & infos, IProgressMonitor *) override {
    loaded += static_cast<int>(infos.size()) + 1;
    return true;
  }
  void NotifyDoneUsingInstance() override { ++done; }
  void GetImmediateParentLoadDefinitions(AutoVectorOfClonablePtrs<IDerivedDataDefinition> & definitions,
                                         IProgressMonitor *) override {
    definitions.push_back(new ProductDefinition(6));
    definitions.push_back(new ProductDefinition(7));
  }

  int loaded = 0;
  int done = 0;
};

class InstanceExtractor : public support::ColumnExtractor, public ISimDataExtractor2 {
public:
  using ColumnExtractor::ColumnExtractor;
  long GetVersionIDForPostprocessing(IDerivedDataDefinition const * definition) const override {
    return 100 + dynamic_cast<ProductDefinition const &>(*definition).number;
  }
  void GetMajorVariables(std::vector<Variable *> & variables, IDerivedDataDefinition const *,
                         SimValueContext const *) const override {
    variables.push_back(major);
  }
  void GetAvailableInstances(std::vector<IContextedSolutionInstance *> & instances, IDerivedDataDefinition const *,
                             IProgressMonitor *) const override {
    if (addsNull)
      instances.push_back(nullptr);
    instances.push_back(const_cast<ProductInstance *>(&instance));
  }

  Variable * major = nullptr;
  bool addsNull = false;
  ProductInstance instance;
};

class SpanLog : public IMemoryTimeProfiler {
public:
  void Begin(char const * label) override { spans.push_back(std::string("begin ") + label); }
  void End(char const * label) override { spans.push_back(std::string("end ") + label); }
  std::vector<std::string> spans;
};

class SolutionInstanceManagerTest : public support::UpdateTest {
protected:
  SolutionInstanceManagerTest() {
    m_solution->SetExtractor(m_instances = new InstanceExtractor(m_manager.get(), m_solution));
    m_instances->major = &m_x;
  }
  SolutionLoadDefinition Definition(long solutionID) const { return {3, solutionID, new ProductDefinition(9)}; }
  SolutionInstanceManager const & Instances() { return *Manager().GetSolutionInstanceManager(); }

  InstanceExtractor * m_instances = nullptr;
};

int NumberOf(IDerivedDataDefinition const * definition, long solutionID) {
  auto const & ofSolution = dynamic_cast<SolutionLoadDefinition const &>(*definition);
  EXPECT_EQ(ofSolution.GetDesignID(), 3);
  EXPECT_EQ(ofSolution.GetSolutionID(), solutionID);
  return dynamic_cast<ProductDefinition const &>(*ofSolution.GetProductSpecificDerivedDataDefinition()).number;
}

} // namespace

TEST_F(SolutionInstanceManagerTest, TheExtractorIsAskedWithTheProductsOwnDefinition) {
  SolutionLoadDefinition const definition = Definition(m_solution->GetID());
  EXPECT_EQ(Instances().GetVersionIDForPostprocessing(&definition), 109);
  std::vector<Variable *> variables;
  Instances().GetMajorVariables(variables, &definition, nullptr);
  EXPECT_EQ(variables, (std::vector<Variable *>{&m_x}));
}

TEST_F(SolutionInstanceManagerTest, OtherDefinitionsAndUnknownSolutionsHaveNothing) {
  ProductDefinition const foreign(1);
  SolutionLoadDefinition const unknown = Definition(m_solution->GetID() + 1000);
  for (IDerivedDataDefinition const * const definition :
       {static_cast<IDerivedDataDefinition const *>(nullptr), static_cast<IDerivedDataDefinition const *>(&foreign),
        static_cast<IDerivedDataDefinition const *>(&unknown)}) {
    EXPECT_EQ(Instances().GetVersionIDForPostprocessing(definition), id::invalidID);
    std::vector<Variable *> variables;
    Instances().GetMajorVariables(variables, definition, nullptr);
    EXPECT_TRUE(variables.empty());
    std::vector<IContextedDerivedDataInstance *> instances;
    Instances().GetAvailableInstances(instances, definition, nullptr);
    EXPECT_TRUE(instances.empty());
  }
}

TEST_F(SolutionInstanceManagerTest, AnExtractorThatDoesNotLoadInstancesHasNone) {
  m_solution->SetExtractor(new support::ColumnExtractor(m_manager.get(), m_solution));
  SolutionLoadDefinition const definition = Definition(m_solution->GetID());
  EXPECT_EQ(Instances().GetVersionIDForPostprocessing(&definition), id::invalidID);
}

TEST_F(SolutionInstanceManagerTest, ANullAmongTheProductsInstancesIsNone) {
  m_instances->addsNull = true;
  SolutionLoadDefinition const definition = Definition(m_solution->GetID());
  std::vector<IContextedDerivedDataInstance *> instances;
  Instances().GetAvailableInstances(instances, &definition, nullptr);
  ASSERT_EQ(instances.size(), 1u);
  std::unique_ptr<IContextedDerivedDataInstance> const instance(instances.front());
  EXPECT_EQ(instance->GetVersionID(), 31);
}

TEST_F(SolutionInstanceManagerTest, InstancesTellTheirSolutionWithWhatTheProductTells) {
  SolutionLoadDefinition const definition = Definition(m_solution->GetID());
  std::vector<IContextedDerivedDataInstance *> instances;
  Instances().GetAvailableInstances(instances, &definition, nullptr);
  ASSERT_EQ(instances.size(), 1u);
  std::unique_ptr<IContextedDerivedDataInstance> const instance(instances.front());
  EXPECT_EQ(instance->GetVersionID(), 31);
  VariableValues values;
  instance->GetMajorVariableValues(values);
  EXPECT_EQ(values.GetVariationKey(), L"x=3");
  std::unique_ptr<IDerivedDataDefinition> const own(instance->GetDerivedDataDefinition());
  EXPECT_EQ(NumberOf(own.get(), m_solution->GetID()), 5);
  std::unique_ptr<IDerivedDataDefinition> const copy(own->Clone());
  EXPECT_EQ(NumberOf(copy.get(), m_solution->GetID()), 5);
  AutoVectorOfClonablePtrs<IDerivedDataDefinition> parents;
  instance->GetImmediateParentLoadDefinitions(parents, nullptr);
  ASSERT_EQ(parents.size(), 2u);
  EXPECT_EQ(NumberOf(parents[0], m_solution->GetID()), 6);
  EXPECT_EQ(NumberOf(parents[1], m_solution->GetID()), 7);
  instance->NotifyDoneUsingInstance();
  EXPECT_EQ(m_instances->instance.done, 1);
}

TEST_F(SolutionInstanceManagerTest, ALoadIsASpanOfItsOwn) {
  SolutionLoadDefinition const definition = Definition(m_solution->GetID());
  std::vector<IContextedDerivedDataInstance *> instances;
  Instances().GetAvailableInstances(instances, &definition, nullptr);
  std::unique_ptr<IContextedDerivedDataInstance> const instance(instances.front());
  SpanLog log;
  IMemoryTimeProfiler * const former = IMemoryTimeProfiler::SetInstance(&log);
  EXPECT_TRUE(instance->LoadInstance(AutoVectorOfClonablePtrs<IExtendedLoadInfo>(), nullptr));
  IMemoryTimeProfiler::SetInstance(former);
  EXPECT_EQ(m_instances->instance.loaded, 1);
  EXPECT_EQ(log.spans, (std::vector<std::string>{"begin CentralizedUpdateSolutionInstance::LoadInstance",
                                                 "end CentralizedUpdateSolutionInstance::LoadInstance"}));
}
