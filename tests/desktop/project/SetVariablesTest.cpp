#include "tests/desktop/support/SessionFixture.h"
#include "tests/support/FaultyFileSystem.h"

using desktop::ErrorKind;

class SetVariables : public support::SessionTest {};

TEST_F(SetVariables, TakesSeveralAtOnceWithoutCase) {
  auto const session = Create();
  session->SetVariables({{L"c", L"2.2pF"}, {L"L", L"3"}});
  EXPECT_EQ(session->GetDesign().GetVariation(), L"C=2.2pF; L=3");
  EXPECT_TRUE(Exists("study.sproject.auto"));
}

TEST_F(SetVariables, RefusesAnUnknownNameBeforeAnythingChanges) {
  auto const session = Create();
  auto const refusal = RefusalOf([&] { session->SetVariables({{L"C", L"2"}, {L"X", L"3"}}); });
  EXPECT_EQ(refusal.kind, ErrorKind::kUsage);
  EXPECT_EQ(refusal.text, "X: the design has no variable of that name; it has: C, L");
  EXPECT_EQ(TextOf(*session, L"C"), L"1");
  EXPECT_FALSE(session->HasUnsavedChanges());
}

TEST_F(SetVariables, RefusesAValueThatIsNoNumber) {
  auto const session = Create();
  for (wchar_t const * const value : {L"", L"two", L"nan", L"1+", L"2*C"}) {
    auto const refusal = RefusalOf([&] { session->SetVariables({{L"C", value}}); });
    EXPECT_EQ(refusal.kind, ErrorKind::kUsage) << text::ToUtf8(AString(value));
    EXPECT_NE(refusal.text.find("is no number"), std::string::npos);
  }
  EXPECT_EQ(TextOf(*session, L"C"), L"1");
}

TEST_F(SetVariables, KeepsTheFormerValuesWhenTheAutosaveCanNotBeWritten) {
  auto const session = Create();
  {
    support::FaultyFileSystem files;
    files.FailAt(1, true);
    EXPECT_EQ(RefusalOf([&] { session->SetVariables({{L"C", L"2"}, {L"C", L"3"}}); }).kind, ErrorKind::kStorage);
  }
  EXPECT_EQ(TextOf(*session, L"C"), L"1");
  EXPECT_FALSE(session->HasUnsavedChanges());
  session->SetVariables({{L"C", L"2"}});
  EXPECT_EQ(TextOf(*session, L"C"), L"2");
}

TEST_F(SetVariables, WritesNothingWhenNothingChanges) {
  auto const session = Create();
  session->SetVariables({{L"C", L"1"}});
  EXPECT_FALSE(Exists("study.sproject.auto"));
  EXPECT_FALSE(session->HasUnsavedChanges());
}
