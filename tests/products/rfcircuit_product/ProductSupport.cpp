#include "tests/products/rfcircuit_product/ProductSupport.h"

#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "products/rfcircuit/product/RfCircuitProduct.h"
#include "products/rfcircuit/product/RfSetup.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <fstream>
#include <limits>
#include <sstream>

namespace rftest {

AString Wide(std::filesystem::path const & path) { return text::FromUtf8(path.string()); }

std::filesystem::path ExampleFile(std::string const & relative) {
  return std::filesystem::path(SOURCE_FOLDER) / "examples" / relative;
}

std::filesystem::path WriteFile(std::filesystem::path const & path, std::string const & content) {
  std::ofstream(path, std::ios::binary) << content;
  return path;
}

std::string Content(std::filesystem::path const & path) {
  std::stringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

desktop::SourceDescription Source(std::filesystem::path const & file) {
  desktop::SourceDescription description;
  AString error;
  EXPECT_TRUE(rfcircuit::RfCircuitProduct().ReadSource(LongFileName(Wide(file)), description, error))
      << text::ToUtf8(error);
  return description;
}

std::string ErrorOfSource(std::filesystem::path const & file) {
  desktop::SourceDescription description;
  AString error;
  EXPECT_FALSE(rfcircuit::RfCircuitProduct().ReadSource(LongFileName(Wide(file)), description, error));
  EXPECT_TRUE(description.setups.empty());
  return text::ToUtf8(error);
}

desktop::SolveJob JobFor(std::filesystem::path const & file, AString const & variation) {
  desktop::SourceSetup const setup = Source(file).setups.at(0);
  desktop::SolveJob job;
  job.sourceFile = Wide(file);
  job.setupName = setup.name;
  job.setupType = setup.typeName;
  job.settings = setup.settings;
  job.variation = variation;
  return job;
}

void Progress::Report(double fraction, AString const & text) {
  fractions.push_back(fraction);
  texts.push_back(text);
}

rfcircuit::NetworkData SmallNetwork() {
  rfcircuit::NetworkData data({0.0, 1e9, 1.1e9 / 3.0 * 4.0}, {{1, L"V1", 50.0}, {2, L"in \"ä\"", 50.0}});
  data.SetS(0, 0, 0, {-0.0, 1.0});
  data.SetS(0, 1, 0, {1.0, 0.0});
  data.SetS(1, 0, 1, {1.0 / 3.0, -2.0});
  data.SetS(1, 1, 0, {std::numeric_limits<double>::denorm_min(), 0.1});
  data.SetS(2, 1, 1, {-1.0, -std::numeric_limits<double>::max()});
  return data;
}

bool SameBits(double a, double b) { return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b); }

void ExpectSame(rfcircuit::NetworkData const & actual, rfcircuit::NetworkData const & expected) {
  ASSERT_EQ(actual.Frequencies().size(), expected.Frequencies().size());
  ASSERT_EQ(actual.Ports().size(), expected.Ports().size());
  for (std::size_t i = 0; i < expected.Ports().size(); ++i) {
    EXPECT_EQ(actual.Ports()[i].number, expected.Ports()[i].number);
    EXPECT_EQ(actual.Ports()[i].name, expected.Ports()[i].name);
    EXPECT_TRUE(SameBits(actual.Ports()[i].z0, expected.Ports()[i].z0));
  }
  for (std::size_t i = 0; i < expected.Frequencies().size(); ++i) {
    EXPECT_TRUE(SameBits(actual.Frequencies()[i], expected.Frequencies()[i])) << "frequency " << i;
    for (std::size_t row = 0; row < expected.Ports().size(); ++row)
      for (std::size_t column = 0; column < expected.Ports().size(); ++column) {
        auto const a = actual.S(i, row, column);
        auto const b = expected.S(i, row, column);
        EXPECT_TRUE(SameBits(a.real(), b.real()) && SameBits(a.imag(), b.imag()))
            << "frequency " << i << " row " << row << " column " << column << ": " << a << " instead of " << b;
      }
  }
}

namespace {

io::CBlock Unpacked(AString const & packed) {
  io::CBlock block;
  EXPECT_TRUE(block.Unpack(packed));
  return block;
}

} // namespace

io::CBlock ThroughText(io::CBlock const & block) { return Unpacked(block.Pack(16, 0)); }

io::CBlock ThroughBinary(io::CBlock const & block) { return Unpacked(block.BinaryPack()); }

} // namespace rftest
