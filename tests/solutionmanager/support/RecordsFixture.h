#pragma once

#include "basekit/profile/CProfileUpdate.h"
#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/ConvValue.h"
#include "solutionmanager/convergence/ConvValues.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "solutionmanager/convergence/SetupConvDef.h"
#include "tests/solutionmanager/support/TestProduct.h"

namespace support {

/// A setup that counts the calls of the operations a product may override; a product may make records there.
class RecordingSetup : public TestSetup {
public:
  using TestSetup::TestSetup;
  ConvergenceData * SetupConvData(AString const & variation, long version, int index) override {
    ++setupCalls;
    lastVersion = version;
    if (makesRecords && !AnyConvData(variation)) {
      CreateConvData(variation, version, makesRecords, index);
      InitConvData(variation, version, L"10", L"0.02", L"Max delta", L"Pass", L"2", L"Passes", index);
    }
    return TestSetup::SetupConvData(variation, version, index);
  }
  void UpdateConvData(AString const &, ConvergenceData *, int) const override { ++updateCalls; }

  SetupConvDef const * makesRecords = nullptr;
  int setupCalls = 0;
  long lastVersion = -5;
  mutable int updateCalls = 0;
};

/// A design whose one setup "A" records its solves under one list of two columns.
class RecordsTest : public ModelTest {
protected:
  static constexpr int kSingle = ConvergenceData::kSingleSet;

  RecordsTest() {
    m_setup = new RecordingSetup(&Manager(), AString(L"A"));
    Manager().AddSimulation(m_setup, nullptr);
    m_setup->AddSolution(m_setup->CreateSolution(L"Sweep"), nullptr);
    m_list = AddList();
  }

  RecordingSetup & Recorded() { return *m_setup; }
  SetupConvDef const * List() const { return m_list; }
  SetupConvDef const * AddList() {
    auto * list = new SetupConvDef(L"Adaptive");
    list->AddDef(new IntConvDef(L"Pass", L"n", false));
    list->AddDef(new DoubleConvDef(L"Max delta", L"d", true));
    Manager().AddSetupConvDef(list);
    return list;
  }
  void Create(AString const & variation, long version, int index = kSingle) {
    Recorded().CreateConvData(variation, version, m_list, index);
    Recorded().InitConvData(variation, version, L"10", L"0.02", L"Max delta", L"Pass", L"2", L"Passes", index);
  }
  void AddPass(AString const & variation, long version, int number, double delta, int index = kSingle) {
    ConvValues row;
    row.AddValue(new IntConvValue(*m_list->begin(), number));
    row.AddValue(new DoubleConvValue(*std::next(m_list->begin()), delta));
    Recorded().AddConvValues(variation, version, &row, index);
    EXPECT_EQ(row.size(), 0) << "the record owns the values now";
  }
  /// Ends the program and starts it again; the product finds its setup.
  void CommitAndReopen() {
    long const setupID = Recorded().GetID();
    Commit();
    Reopen();
    m_list = AddList();
    m_reopened = dynamic_cast<BaseSimulationSetup *>(Manager().GetISimulationSetupByID(setupID, false, false));
    ASSERT_NE(m_reopened, nullptr);
  }

  static CProfileUpdate Start(AString const & info) {
    return {CProfileUpdate::kStartGroup, CProfileTask(L"Group", info)};
  }
  static CProfileUpdate Stop(AString const & info) { return {CProfileUpdate::kStopGroup, CProfileTask(), info}; }
  static CProfileUpdate Task(AString const & name) { return {CProfileUpdate::kTask, CProfileTask(name, L"")}; }

  BaseSimulationSetup * m_reopened = nullptr;

private:
  RecordingSetup * m_setup;
  SetupConvDef const * m_list;
};

} // namespace support
