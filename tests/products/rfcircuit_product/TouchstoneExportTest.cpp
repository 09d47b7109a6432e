#include "tests/products/rfcircuit_product/RfProductTest.h"

#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"

#include <fstream>
#include <sstream>

using namespace rftest;

namespace {

class TouchstoneExport : public RfProductTest {
protected:
  rfcircuit::RfVariation & Solved(std::string const & example, AString const & variation) {
    return Solve(CreateSetupOf(example), example, variation);
  }

  // The error, or nothing when the file was written.
  std::string Write(BaseSolutionVariation const & variation, std::string const & name, int digits = 15) {
    AString error;
    bool const ok = m_product.WriteTouchstone(variation, LongFileName(Wide(m_folder / name)), digits, m_written, error);
    EXPECT_EQ(ok, error.empty());
    return text::ToUtf8(error);
  }

  LongFileName m_written;
};

std::vector<std::string> Lines(std::string const & text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

} // namespace

TEST_F(TouchstoneExport, AddsTheExtensionForTheNumberOfPorts) {
  EXPECT_EQ(Write(Solved("lowpass/lowpass.cir", L""), "point.1"), "");
  EXPECT_EQ(m_written.FilePath(), Wide(m_folder / "point.1.s2p"));
  EXPECT_TRUE(m_written.Exists());
  EXPECT_EQ(Write(Solved("branchline/branchline.cir", L""), "ring"), "");
  EXPECT_EQ(m_written.FilePath(), Wide(m_folder / "ring.s4p"));
}

TEST_F(TouchstoneExport, TellsInCommentsWhatTheFileHolds) {
  ASSERT_EQ(Write(Solved("lowpass/lowpass.cir", L"cscale=1.5; lscale=1.0"), "point"), "");
  auto const lines = Lines(Content(m_folder / "point.s2p"));
  ASSERT_GT(lines.size(), 5u);
  EXPECT_EQ(lines[0].rfind("! Written by rfcircuit ", 0), 0u);
  EXPECT_EQ(lines[1], "! Solution: SParameters1 : Sweep");
  EXPECT_EQ(lines[2], "! Variation: cscale=1.5; lscale=1.0");
  EXPECT_EQ(lines[3], "! Ports: 1 = V1, 2 = V2");
  EXPECT_EQ(lines[4], "# Hz S RI R 50");
  EXPECT_EQ(lines.size(), 5u + 201u);
}

TEST_F(TouchstoneExport, TellsThatValuesAreFitted) {
  ASSERT_EQ(Write(Solved("crystal/crystal.cir", L""), "point"), "");
  auto const lines = Lines(Content(m_folder / "point.s2p"));
  ASSERT_EQ(lines.size(), 6u + 10001u);
  EXPECT_NE(lines[4].find("of 10001 points solved, the others fitted"), std::string::npos) << lines[4];
  EXPECT_NE(lines[4].find(", converged"), std::string::npos) << lines[4];
}

TEST_F(TouchstoneExport, HoldsTheNumbersOfTheVariation) {
  auto const & variation = Solved("lowpass/lowpass.cir", L"");
  ASSERT_EQ(Write(variation, "point", 17), "");
  auto const lines = Lines(Content(m_folder / "point.s2p"));
  ASSERT_EQ(lines.size(), 206u);
  std::istringstream row(lines[5 + 100]);
  double frequency = 0.0;
  double re[4];
  double im[4];
  row >> frequency;
  for (int i = 0; i < 4; ++i)
    row >> re[i] >> im[i];
  auto const & data = variation.GetData();
  EXPECT_EQ(frequency, data.Frequencies()[100]);
  EXPECT_EQ(std::complex<double>(re[0], im[0]), data.S(100, 0, 0));
  EXPECT_EQ(std::complex<double>(re[1], im[1]), data.S(100, 1, 0));
  EXPECT_EQ(std::complex<double>(re[2], im[2]), data.S(100, 0, 1));
  EXPECT_EQ(std::complex<double>(re[3], im[3]), data.S(100, 1, 1));
}

TEST_F(TouchstoneExport, OfTheSameDataIsTheSameFile) {
  auto const & variation = Solved("lowpass/lowpass.cir", L"");
  ASSERT_EQ(Write(variation, "a"), "");
  ASSERT_EQ(Write(variation, "b"), "");
  EXPECT_EQ(Content(m_folder / "a.s2p"), Content(m_folder / "b.s2p"));
}

TEST_F(TouchstoneExport, OfPortsWithDifferentReferencesTellsEachInVersionTwo) {
  ASSERT_EQ(Write(Solved("transformer/transformer.cir", L""), "point"), "");
  std::string const text = Content(m_folder / "point.s2p");
  EXPECT_NE(text.find("\n[Version] 2.0\n# Hz S RI R 50\n[Number of Ports] 2\n"), std::string::npos) << text;
  EXPECT_NE(text.find("\n[Reference] 50 200\n"), std::string::npos);
  EXPECT_TRUE(text.ends_with("\n[End]\n"));
}

TEST_F(TouchstoneExport, WithoutDataInMemoryIsRefused) {
  auto & variation = Solved("lowpass/lowpass.cir", L"cscale=2");
  variation.ClearInstanceMemoryData();
  EXPECT_EQ(Write(variation, "point"), "variation 'cscale=2' has no S-parameters in memory; load it first");
}

TEST_F(TouchstoneExport, IntoAFolderThatIsNotThereIsRefused) {
  EXPECT_NE(Write(Solved("lowpass/lowpass.cir", L""), "absent/point").find("absent/point.s2p"), std::string::npos);
}

TEST_F(TouchstoneExport, WithSenselessDigitsIsRefused) {
  EXPECT_NE(Write(Solved("lowpass/lowpass.cir", L""), "point", 0), "");
  EXPECT_NE(Write(Solved("lowpass/lowpass.cir", L""), "point", 18), "");
}
