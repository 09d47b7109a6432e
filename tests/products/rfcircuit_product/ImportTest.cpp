#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/ImportedSetup.h"
#include "desktop/product/ImportedSolution.h"
#include "tests/products/rfcircuit_product/RfProductTest.h"

using namespace rftest;
using desktop::ImportedSetup;
using desktop::ImportedSolution;

namespace {

std::string const kTwoPort = "# GHz S RI R 75\n1 0.5 0 0.25 0 0.125 0 -0.5 0\n2 0 0.5 0 0.25 0 0.125 0 -0.5\n";
std::string const kShifted = "# GHz S RI R 75\n1 0.5 0 0.75 0 0.125 0 -0.5 0\n2 0 0.5 0 0.25 0 0.125 0 -0.5\n";

class RfImport : public RfProductTest {
protected:
  desktop::ImportedData Read(std::string const & name, std::string const & content) {
    desktop::ImportedData data;
    AString error;
    std::filesystem::path const file = WriteFile(m_folder / name, content);
    EXPECT_TRUE(m_product.ReadImport(LongFileName(Wide(file)), LongFileName(Wide(ExampleFile("lowpass/lowpass.cir"))),
                                     data, error))
        << text::ToUtf8(error);
    return data;
  }

  ImportedSolution & Add(AString const & name, desktop::ImportedData const & data) {
    auto * const setup = new ImportedSetup(Manager(), name);
    setup->AddSolution(setup->CreateSolution(ImportedSolution::kName), nullptr);
    EXPECT_TRUE(setup->GetImportedSolution()->Keep(data));
    EXPECT_TRUE(Manager().AddImportData(setup->GetImportedSolution(), nullptr));
    return *setup->GetImportedSolution();
  }

  static rfcircuit::RfVariation & Loaded(ImportedSolution & solution) {
    return dynamic_cast<rfcircuit::RfVariation &>(solution.Load());
  }
};

} // namespace

TEST_F(RfImport, FilesAreChosenByTheirEndings) {
  for (auto const * const name : {L"a.s1p", L"b.S2P", L"c.s12p"})
    EXPECT_TRUE(m_product.IsImportable(LongFileName(AString(name)))) << text::ToUtf8(AString(name));
  for (auto const * const name : {L"a.txt", L"a", L"a.sp", L"a.s2p.txt"})
    EXPECT_FALSE(m_product.IsImportable(LongFileName(AString(name)))) << text::ToUtf8(AString(name));
}

TEST_F(RfImport, NumbersAndImpedancesAreThoseOfTheFile) {
  ImportedSolution & solution = Add(L"Measured", Read("amp.s2p", kTwoPort));
  rfcircuit::NetworkData const & data = Loaded(solution).GetData();
  EXPECT_EQ(data.Frequencies(), (std::vector<double>{1e9, 2e9}));
  EXPECT_EQ(data.S(0, 1, 0), std::complex<double>(0.25, 0)) << "of two ports, S21 comes second";
  EXPECT_EQ(data.S(1, 1, 1), std::complex<double>(0, -0.5));
  EXPECT_EQ(data.Ports()[1].z0, 75.0);
  EXPECT_EQ(data.Ports()[1].name, L"2") << "no setting of the circuit's ports reaches it";
}

TEST_F(RfImport, DataGoesFromMemoryAndComesBackFromTheLibrary) {
  ImportedSolution & solution = Add(L"Measured", Read("amp.s2p", kTwoPort));
  ASSERT_TRUE(Loaded(solution).HasSolutionData());
  Loaded(solution).ClearInstanceMemoryData();
  EXPECT_TRUE(solution.HasSolutionData(AString(), -1));
  EXPECT_EQ(Loaded(solution).GetData().Frequencies().size(), 2u);
}

TEST_F(RfImport, AnotherNumberOfPortsIsTold) {
  EXPECT_TRUE(Read("two.s2p", kTwoPort).notices.empty());
  auto const data = Read("one.s1p", "# GHz S RI R 50\n1 0.5 0\n");
  ASSERT_FALSE(data.notices.empty());
  EXPECT_NE(data.notices.back().find(L"the file has 1 port, the circuit 2"), AString::npos);
}

TEST_F(RfImport, WhatCantBeReadIsRefusedInOneLine) {
  desktop::ImportedData data;
  AString error;
  std::filesystem::path const file = WriteFile(m_folder / "bad.s2p", "# GHz S RI R 50\n1 0.5\n");
  EXPECT_FALSE(m_product.ReadImport(LongFileName(Wide(file)), LongFileName(), data, error));
  EXPECT_NE(error.find(L"bad.s2p"), AString::npos);
  EXPECT_EQ(error.find(L"\n"), AString::npos);
}

TEST_F(RfImport, ADifferenceIsToldWithItsPlaceAndBothNumbers) {
  auto & first = Loaded(Add(L"A", Read("a.s2p", kTwoPort)));
  auto & second = Loaded(Add(L"B", Read("b.s2p", kShifted)));
  desktop::Comparison comparison;
  AString error;
  ASSERT_TRUE(m_product.Compare(first, second, comparison, error)) << text::ToUtf8(error);
  ASSERT_EQ(comparison.parameters.size(), 4u);
  auto const & s21 = comparison.parameters[2];
  EXPECT_EQ(s21.name, L"S(2,1)");
  EXPECT_EQ(s21.largest, 0.5);
  EXPECT_EQ(s21.largestAt, 0u);
  EXPECT_EQ(s21.first[0], std::complex<double>(0.25));
  EXPECT_EQ(s21.second[0], std::complex<double>(0.75));
  EXPECT_EQ(comparison.parameters[0].largest, 0.0);
}

TEST_F(RfImport, NetworksOfOtherSizesAreNotCompared) {
  auto & first = Loaded(Add(L"A", Read("a.s2p", kTwoPort)));
  auto & second = Loaded(Add(L"B", Read("b.s1p", "# GHz S RI R 50\n1 0.5 0\n")));
  desktop::Comparison comparison;
  AString error;
  EXPECT_FALSE(m_product.Compare(first, second, comparison, error));
  EXPECT_FALSE(error.empty());
}
