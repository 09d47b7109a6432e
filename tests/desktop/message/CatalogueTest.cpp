#include "desktop/message/Catalogue.h"

#include "basekit/message/KelvroMessage.h"
#include "desktop/KitDesktop.h"
#include "tests/support/Printers.h"

#include <algorithm>
#include <gtest/gtest.h>

TEST(Catalogue, HoldsATextForEveryNumberThatTheLibraryPosts) {
  for (long const number : {24527, 24528, 24553, 24554, 24555, 24556, 24557, 24558, 24559, 24560, 24575,
                            24576, 24583, 24584, 24585, 24586, 24618, 24624, 24679, 24680, 24681, 24729})
    EXPECT_FALSE(desktop::CatalogueText(number).empty()) << number;
}

TEST(Catalogue, StandsInTheOrderOfItsNumbers) {
  auto const numbers = desktop::CatalogueNumbers();
  EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
  EXPECT_EQ(std::adjacent_find(numbers.begin(), numbers.end()), numbers.end());
}

TEST(Catalogue, PutsTheArgumentsIn) {
  KelvroMessage message(24586, KelvroMessage::kError, 6);
  message.Arguments().AddArg(L"C");
  message.Arguments().AddArg(L"C=%1");
  EXPECT_EQ(desktop::ComposeMessage(message), L"'C' has a value in 'C=%1' at which the solution holds no point. Ask "
                                              L"at a point of the sweep, or solve this one.");
}

TEST(Catalogue, LeavesThePlaceOfAMissingArgumentEmpty) {
  EXPECT_EQ(desktop::ComposeMessage(KelvroMessage(24584, KelvroMessage::kError, 6)),
            L"There is no solution ''. Check the name against the list of solutions.");
}

TEST(Catalogue, ShowsAnUnknownNumberWithItsArguments) {
  KelvroMessage message(7, KelvroMessage::kInfo, 6);
  message.Arguments().AddArg(L"a");
  message.Arguments().AddArg(L"b");
  EXPECT_EQ(desktop::ComposeMessage(message), L"Message 7: a, b");
}

TEST(KitDesktop, IsInstalledForItsLifeAndGivesTheFormerBack) {
  IKitDesktop * const before = GetIKitDesktop();
  {
    desktop::KitDesktop outer;
    {
      desktop::KitDesktop inner;
      EXPECT_EQ(GetIKitDesktop(), &inner);
    }
    EXPECT_EQ(GetIKitDesktop(), &outer);
    outer.SetReportRewriteEnabled(true);
    EXPECT_TRUE(GetIKitDesktop()->IsReportRewriteEnabled());
  }
  EXPECT_EQ(GetIKitDesktop(), before);
}
