#include "desktop/design/Design.h"

#include "CoreInterfaces/IVariableServer.h"
#include "basekit/io/CBlock.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableNameSpace.h"
#include "basekit/value/VariableValues.h"
#include "desktop/project/Project.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

class DesignTest : public testing::Test {
protected:
  DesignTest() {
    m_design.AddVariable(L"L", L"2nH");
    m_design.AddVariable(L"C", L"1");
  }
  desktop::Project m_project{L"study"};
  desktop::Design m_design{m_project, L"Circuit", 3, L"fake"};
};

TEST_F(DesignTest, KeepsVariablesInTheOrderInWhichTheyWereAdded) {
  ASSERT_EQ(m_design.GetVariables().size(), 2u);
  EXPECT_EQ(m_design.GetVariables().front()->GetName(), L"L");
  EXPECT_EQ(m_design.FindVariable(L"l")->GetValueText(), L"2nH");
  EXPECT_EQ(m_design.FindVariable(L"X"), nullptr);
}

TEST_F(DesignTest, BuildsVariationsFromItsVariablesWithSomeReplaced) {
  EXPECT_EQ(m_design.GetVariation(), L"C=1; L=2nH");
  EXPECT_EQ(m_design.GetVariation({{L"c", L"5"}}), L"C=5; L=2nH");
}

TEST_F(DesignTest, GivesTheNominalInstanceFirstAndLetsItFollowTheVariables) {
  m_design.InstanceFor(L"C=7; L=1");
  m_design.FindVariable(L"C")->SetValueText(L"4");
  std::vector<IDesignInstance *> instances;
  m_design.GetDesignInstances(instances);
  ASSERT_EQ(instances.size(), 2u);
  EXPECT_EQ(instances[0]->GetVariationKey(), L"C=4; L=2nH");
  EXPECT_EQ(instances[1]->GetVariationKey(), L"C=7; L=1");
  EXPECT_NE(instances[0]->GetID(), instances[1]->GetID());
  EXPECT_EQ(instances[0]->GetIDesign(), &m_design);
}

TEST_F(DesignTest, GivesOneInstanceForOneText) {
  auto & first = m_design.InstanceFor(L"C=7; L=1");
  m_design.InstanceFor(L"C=8; L=1");
  EXPECT_EQ(&m_design.InstanceFor(L"C=7; L=1"), &first);
}

TEST_F(DesignTest, CompletesTheNominalValuesOfAnInstance) {
  VariableValues values;
  m_design.InstanceFor(L"C=7").GetNominalVariableValues(values);
  EXPECT_EQ(values.Find(L"C")->GetSIValue(), 7.0);
  EXPECT_EQ(values.Find(L"L")->GetSIValue(), 2e-9);
}

TEST_F(DesignTest, ServesItsVariablesToNameSpaces) {
  VariableNameSpace nameSpace;
  m_design.SetupVariableNameSpace(nameSpace, false);
  EXPECT_EQ(nameSpace.FindVariable(L"c"), m_design.FindVariable(L"C"));
  EXPECT_EQ(m_design.GetVariableServer()->ResolveVariable(L"L"), m_design.FindVariable(L"L"));
}

TEST_F(DesignTest, ReadsBackWhatItWrote) {
  io::CBlock block(L"Design");
  m_design.Write(block);
  desktop::Design other(m_project, L"Circuit", 3, L"fake");
  other.AddVariable(L"gone", L"1");
  ASSERT_TRUE(other.Read(block));
  ASSERT_EQ(other.GetVariables().size(), 2u);
  EXPECT_EQ(other.GetVariables()[0]->GetName(), L"L");
  EXPECT_EQ(other.GetVariables()[0]->GetValueText(), L"2nH");
}

TEST_F(DesignTest, KeepsItsVariablesWhenABlockIsNotOfItsMaking) {
  io::CBlock empty(L"Design");
  EXPECT_FALSE(m_design.Read(empty));
  io::CBlock variables(L"Variables");
  variables << io::CBlock_func(L"Variable");
  io::CBlock nameless(L"Design");
  nameless << variables;
  EXPECT_FALSE(m_design.Read(nameless));
  EXPECT_EQ(m_design.GetVariables().size(), 2u);
}

TEST(ProjectPaths, StandBesideTheProjectFile) {
  for (wchar_t const * const path : {L"/a/my.study", L"/a/my.study.sproject", L"/a/b/../my.study"}) {
    desktop::Project const project(path);
    EXPECT_EQ(project.GetName(), L"my.study");
    EXPECT_EQ(project.GetFile().FilePath(), L"/a/my.study.sproject");
    EXPECT_EQ(project.GetAutosaveFile().FilePath(), L"/a/my.study.sproject.auto");
    EXPECT_EQ(project.GetLockFile().FilePath(), L"/a/my.study.sproject.lock");
    EXPECT_EQ(project.GetResultsFolder().FilePath(), L"/a/my.study.results/");
  }
}
