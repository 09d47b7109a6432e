// The context in which a manager writes blocks of one variation alone.
#include "solutionmanager/transfer/ExportVariationContext.h"

#include "solutionmanager/transfer/ExportVariationContextObject.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"

#include <type_traits>

namespace {

using ExportContext = support::ModelTest;

static_assert(std::is_aggregate_v<ExportVariationContext>);

TEST(ExportVariationContext, OfNoVariationIsThatOfTheSavedState) {
  ExportVariationContext const context;
  EXPECT_EQ(context.designVariationKey, AString());
  EXPECT_EQ(context.designVariationID, id::invalidID);
  EXPECT_TRUE(context.isSavedState);
}

TEST_F(ExportContext, StandsAsLongAsItsObject) {
  long const id = Manager().GetVariationID(L"x=1");
  {
    ExportVariationContextObject const exporting(Manager(), id, false);
    ASSERT_NE(Manager().GetExportVariationContext(), nullptr);
    EXPECT_EQ(Manager().GetExportVariationContext()->designVariationKey, AString(L"x=1"));
    EXPECT_EQ(Manager().GetExportVariationContext()->designVariationID, id);
    EXPECT_FALSE(Manager().GetExportVariationContext()->isSavedState);
  }
  EXPECT_EQ(Manager().GetExportVariationContext(), nullptr);
}

TEST_F(ExportContext, WithinAnotherOneIsReportedAndEndsBoth) {
  ExportVariationContextObject const outer(Manager(), Manager().GetVariationID(L"x=1"), true);
  support::AssertWatch::Expect("!manager.m_ExportVariationContext");
  {
    ExportVariationContextObject const inner(Manager(), Manager().GetVariationID(L"x=2"), true);
    EXPECT_EQ(Manager().GetExportVariationContext()->designVariationKey, AString(L"x=2"));
  }
  EXPECT_EQ(Manager().GetExportVariationContext(), nullptr);
}

} // namespace
