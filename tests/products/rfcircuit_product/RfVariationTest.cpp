#include "tests/products/rfcircuit_product/RfProductTest.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"

using namespace rftest;

namespace {

AString const kVariation = L"c=1.2pF; l=4nH";

class RfVariation : public RfProductTest {
protected:
  RfVariation() : m_setup(CreateSetupOf("lowpass/lowpass.cir")), m_variation(&SolutionOf(m_setup), kVariation, -1) {}

  io::CBlock Written() {
    m_variation.SetData(SmallNetwork());
    io::CBlock block(m_variation.GetSolutionVariationKey().Pack());
    EXPECT_TRUE(m_variation.WriteVariationDataBlock(block));
    m_variation.ClearInstanceMemoryData();
    return block;
  }

  rfcircuit::RfSetup & m_setup;
  rfcircuit::RfVariation m_variation;
};

} // namespace

TEST_F(RfVariation, HasDataUntilItsMemoryIsCleared) {
  EXPECT_FALSE(m_variation.HasSolutionData());
  m_variation.SetData(SmallNetwork());
  EXPECT_TRUE(m_variation.HasSolutionData());
  EXPECT_TRUE(m_variation.ClearInstanceMemoryData());
  EXPECT_FALSE(m_variation.HasSolutionData());
}

TEST_F(RfVariation, ReadsBackBitForBitWhatItWrote) {
  io::CBlock const block = Written();
  for (io::CBlock const & read : {block, ThroughText(block), ThroughBinary(block)}) {
    m_variation.ClearInstanceMemoryData();
    ASSERT_EQ(m_variation.ReadVariationDataBlock(read), io::kNoError);
    ExpectSame(m_variation.GetData(), SmallNetwork());
  }
}

TEST_F(RfVariation, WritesItsDataIDFirst) {
  io::CBlock const block = Written();
  ASSERT_FALSE(block.Empty());
  EXPECT_EQ((*block.begin())->Name(), L"VariationDataID");
}

TEST_F(RfVariation, WritesNothingWithoutData) {
  io::CBlock block(m_variation.GetSolutionVariationKey().Pack());
  EXPECT_FALSE(m_variation.WriteVariationDataBlock(block));
  EXPECT_TRUE(block.Empty());
}

TEST_F(RfVariation, HasNoDataAfterABlockThatDoesNotFit) {
  m_variation.SetData(SmallNetwork());
  io::CBlock block(m_variation.GetSolutionVariationKey().Pack());
  io::CBlock_func frequencies(L"Frequencies");
  frequencies << 1e9;
  block << frequencies;
  EXPECT_EQ(m_variation.ReadVariationDataBlock(block), io::kBadContent);
  EXPECT_FALSE(m_variation.HasSolutionData());
}

TEST_F(RfVariation, IsLoadedWithoutDataFromALibraryWhoseBlockDoesNotFit) {
  io::CBlock block;
  block << io::named(L"Frequencies", 1e9);
  Store(m_setup, kVariation, block);
  auto const * const loaded = VariationAt(m_setup, kVariation);
  ASSERT_NE(loaded, nullptr);
  EXPECT_FALSE(loaded->HasSolutionData());
}
