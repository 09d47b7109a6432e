#include "bench/solve/IdleProduct.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/profile/CProfileUpdate.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/ProductSolutionManager.h"
#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "solutionmanager/convergence/SetupConvDef.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <chrono>
#include <fstream>
#include <thread>

namespace bench {

namespace {

constexpr int kValues = 200;

class IdleVariation : public BaseSolutionVariation {
public:
  using BaseSolutionVariation::BaseSolutionVariation;
  bool HasSolutionData() const override { return false; }
};

class IdleSolution : public BaseSolution {
public:
  IdleSolution(BaseSimulationSetup const & setup, long id, long version) : BaseSolution(setup, id, version) {
    SetExtractor(new BaseSimDataExtractor(&setup.GetBaseSolutionMgr()->ForEdit(), this));
  }

protected:
  BaseSolutionVariation * CreateSolutionVariation(AString const & variation, long version) override {
    return EnterNewVariation(new IdleVariation(this, variation, version));
  }
};

class IdleSetup : public BaseSimulationSetup {
public:
  using BaseSimulationSetup::BaseSimulationSetup;
  AString GetSimSetupTypeName() const override { return L"Idle"; }
  BaseSolution * CreateSolution(long id, long version) override {
    return BecomeDefaultIfFirst(new IdleSolution(*this, id, version));
  }
  BaseSolution * CreateSolution(AString const & name) override {
    auto * const solution = new IdleSolution(*this, -1, 0);
    solution->SetSolutionName(name);
    return BecomeDefaultIfFirst(solution);
  }

protected:
  ConvergenceData * SetupConvData(AString const & variation, long version, int index) override {
    if (!BaseSimulationSetup::SetupConvData(variation, version, index))
      CreateConvData(variation, version, GetBaseSolutionMgr()->GetConvDefsForSetup(L"Idle"), index);
    InitConvData(variation, version, L"20", L"0.001", L"Change", L"Pass", L"2", L"Passes", index);
    return BaseSimulationSetup::SetupConvData(variation, version, index);
  }
};

class IdleManager : public desktop::ProductSolutionManager {
public:
  using ProductSolutionManager::ProductSolutionManager;
  BaseSimulationSetup * CreateSimulationSetup(long id, long version, AString const &) override {
    return new IdleSetup(this, id, version);
  }
  BaseSimulationSetup * CreateSimulationSetup(AString const & name, AString const &) override {
    return new IdleSetup(this, name);
  }
  BaseSimulationSetup * CreateSimulationSetup(ISimulationSetup const * source) override {
    return new IdleSetup(this, source);
  }
  AString GetDesignResultsFolderName() const override { return kFolder; }

protected:
  void SetupConvDefs() override {
    auto * const columns = new SetupConvDef(L"Idle");
    columns->AddDef(new IntConvDef(L"Pass", L"n", false));
    columns->AddDef(new IntConvDef(L"Points", L"p", true));
    columns->AddDef(new DoubleConvDef(L"Change", L"d", true));
    AddSetupConvDef(columns);
  }

private:
  static inline wchar_t const * const kFolder = L"idle";
};

class Runner : public desktop::IJobRunner {
public:
  bool Run(desktop::SolveJob const & job, io::CBlock & result, AString &, desktop::IJobProgress & progress) override {
    if (m_source != job.sourceFile) {
      m_source = job.sourceFile;
      std::ifstream(text::ToUtf8(m_source)) >> m_milliseconds;
    }
    for (int pass = 1; pass <= IdleProduct::kPasses; ++pass) {
      io::CBlock_ptr<io::CBlock_func> const row(new io::CBlock_func(L"c"));
      *row << io::named(L"n", pass) << io::named(L"p", 10 * pass) << io::named(L"d", 1.0 / pass);
      progress.ReportPass(row, ConvergenceData::kSingleSet);
    }
    progress.ReportConvergence(true, L"2", ConvergenceData::kSingleSet);
    for (wchar_t const * const name : {L"Read", L"Factor", L"Fit"})
      progress.ReportProfile({CProfileUpdate::kTask, CProfileTask(name, AString())}, ConvergenceData::kSingleSet);
    if (m_milliseconds > 0)
      std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(m_milliseconds));
    io::CBlock_func values(L"Values");
    for (int i = 0; i < kValues; ++i)
      values << 0.5 * i;
    result << values;
    return true;
  }

private:
  AString m_source;
  double m_milliseconds = 0;
};

} // namespace

bool IdleProduct::ReadSource(LongFileName const & file, desktop::SourceDescription & description, AString &) const {
  description.files.push_back(file.FilePath());
  description.variables.push_back({L"x", L"1"});
  description.variables.push_back({L"y", L"2"});
  description.setups.push_back({L"Idle", L"Idle", io::CBlock(L"Settings")});
  return true;
}

std::unique_ptr<desktop::ProductSolutionManager> IdleProduct::MakeManager(IDesign * design) const {
  return std::make_unique<IdleManager>(design);
}

BaseSimulationSetup * IdleProduct::CreateSetup(desktop::ProductSolutionManager & manager,
                                               desktop::SourceSetup const & source, KelvroCommand * command) const {
  BaseSimulationSetup * const setup = manager.CreateSimulationSetup(source.name, source.typeName);
  manager.AddSimulation(setup, command);
  setup->AddSolution(setup->CreateSolution(L"Points"), nullptr);
  return setup;
}

void IdleProduct::DescribeJob(BaseSimulationSetup const & setup, desktop::SolveJob & job) const {
  job.setupName = setup.GetName();
  job.setupType = setup.GetSimSetupTypeName();
}

std::unique_ptr<desktop::IJobRunner> IdleProduct::MakeJobRunner() const { return std::make_unique<Runner>(); }

} // namespace bench
