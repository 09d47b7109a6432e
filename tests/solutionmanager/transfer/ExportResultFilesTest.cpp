// The result files of an exported design point.
#include "tests/solutionmanager/transfer/ExportFixture.h"

namespace {

class ExportResultFiles : public support::SavedPointsTest {
protected:
  /// Below the results folder, and below the folder of the export.
  AString From(AString const & name) const {
    return text::FromUtf8((m_folder / "results").string()) + L"/Design.files/" + name;
  }
  AString To(AString const & name) const { return Target().FilePath() + L"Design.files/" + name; }
  static AString Failed(AString const & from, AString const & to) {
    return AString(L"Error in copying ") + from + L" to " + to + L" for export-design-point\n";
  }
};

TEST_F(ExportResultFiles, CopiesFilesAndFoldersUnderTheirNames) {
  SolveTwoPoints();
  Put("a.txt", "a");
  Put("deep/er/b.txt", "b");
  Put("folder/c.txt", "c");
  Put("folder/inner/d.txt", "d");
  Put("other.txt", "of another point");
  Product().files = {L"a.txt", L"deep/er/b.txt"};
  Product().dirs = {L"folder"};
  Product().renamed = {{L"a.txt", L"not asked in the saved state"}};
  ASSERT_TRUE(Export(L"x=1"));
  EXPECT_EQ(Exported("a.txt"), "a");
  EXPECT_EQ(Exported("deep/er/b.txt"), "b");
  EXPECT_EQ(Exported("folder/c.txt"), "c");
  EXPECT_EQ(Exported("folder/inner/d.txt"), "d");
  EXPECT_EQ(Exported("other.txt"), "-");
  AString const from = text::FromUtf8((m_folder / "results").string()) + L"/Design.files/";
  AString const to = Target().FilePath() + L"Design.files/";
  auto const lines = TakeTraces();
  EXPECT_EQ(CountTraces(lines, AString(L"Successfully copied ") + from + L"a.txt to " + to +
                                   L"a.txt for export-design-point\n"),
            1);
  EXPECT_EQ(CountTraces(lines, AString(L"Successfully copied ") + from + L"folder/ to " + to +
                                   L"folder/ for export-design-point\n"),
            1);
}

TEST_F(ExportResultFiles, GivesUnsavedFilesAndFoldersTheNamesOfTheMap) {
  SolveTwoPoints();
  Put("work1", "one");
  Put("work2", "two");
  Put("folder1/c.txt", "c");
  Product().files = {L"work1", L"work2"};
  Product().dirs = {L"folder1"};
  Product().renamed = {{L"work1", L"saved/one"}, {L"folder1", L"folder2"}};
  ASSERT_TRUE(Export(L"x=1", false));
  EXPECT_EQ(Exported("saved/one"), "one");
  EXPECT_EQ(Exported("work1"), "-");
  EXPECT_EQ(Exported("work2"), "two");
  EXPECT_EQ(Exported("folder2/c.txt"), "c");
}

TEST_F(ExportResultFiles, TellsAFileThatIsNotThereAndCopiesTheNextOne) {
  SolveTwoPoints();
  Put("b.txt", "b");
  Product().files = {L"gone.txt", L"b.txt"};
  EXPECT_TRUE(Export(L"x=1"));
  EXPECT_EQ(Exported("b.txt"), "b");
  AString const from = text::FromUtf8((m_folder / "results").string()) + L"/Design.files/gone.txt";
  EXPECT_EQ(CountTraces(TakeTraces(), AString(L"Error in copying ") + from + L" to " + Target().FilePath() +
                                          L"Design.files/gone.txt for export-design-point\n"),
            1);
}

TEST_F(ExportResultFiles, CopiesNothingFromOutsideTheResultsFolder) {
  SolveTwoPoints();
  Put("../secret.txt", "secret");
  Put("a.txt", "a");
  Product().files = {L"../secret.txt", text::FromUtf8((m_folder / "results/secret.txt").string()), L"a.txt"};
  Product().renamed = {{L"a.txt", L"../a.txt"}};
  ASSERT_TRUE(Export(L"x=1", false));
  EXPECT_EQ(Exported("../secret.txt"), "-");
  EXPECT_EQ(Exported("../a.txt"), "-");
}

TEST_F(ExportResultFiles, TellsAFolderThatIsNotThereAndCopiesTheNextOne) {
  SolveTwoPoints();
  Put("folder/b.txt", "b");
  Product().dirs = {L"gone", L"folder"};
  EXPECT_TRUE(Export(L"x=1"));
  EXPECT_EQ(Exported("folder/b.txt"), "b");
  EXPECT_EQ(CountTraces(TakeTraces(), Failed(From(L"gone/"), To(L"gone/"))), 1);
}

TEST_F(ExportResultFiles, TellsAFolderThatCannotBeCopiedWholeAndCopiesTheRestOfIt) {
  SolveTwoPoints();
  Put("folder/a.txt", "a");
  Put("folder/z.txt", "z");
  std::filesystem::create_symlink("a.txt", m_folder / "results/Design.files/folder/link");
  Product().dirs = {L"folder"};
  EXPECT_TRUE(Export(L"x=1"));
  EXPECT_EQ(Exported("folder/a.txt"), "a");
  EXPECT_EQ(Exported("folder/z.txt"), "z");
  EXPECT_EQ(Exported("folder/link"), "-");
  EXPECT_EQ(CountTraces(TakeTraces(), Failed(From(L"folder/"), To(L"folder/"))), 1);
}

TEST_F(ExportResultFiles, FollowsNoLinkThatAListedFileOrItsFolderIs) {
  SolveTwoPoints();
  Put("../elsewhere/a.txt", "a");
  std::filesystem::create_directories(m_folder / "results/Design.files");
  std::filesystem::create_symlink("../elsewhere/a.txt", m_folder / "results/Design.files/link.txt");
  std::filesystem::create_directory_symlink("../elsewhere", m_folder / "results/Design.files/linked");
  Product().files = {L"link.txt", L"linked/a.txt"};
  Product().dirs = {L"linked"};
  EXPECT_TRUE(Export(L"x=1"));
  auto const lines = TakeTraces();
  for (AString const & name : {AString(L"link.txt"), AString(L"linked/a.txt"), AString(L"linked/")})
    EXPECT_EQ(CountTraces(lines, Failed(From(name), To(name))), 1) << text::ToUtf8(name);
  EXPECT_EQ(Exported("linked/a.txt"), "-");
}

TEST_F(ExportResultFiles, IntoAListedFolderAreNotCopiedOnceMore) {
  SolveTwoPoints();
  Put("a/b.txt", "b");
  Put("a/exp/c.txt", "c");
  Product().dirs = {L"a"};
  LongFileName const inside(From(L"a/exp/"));
  EXPECT_TRUE(Manager().ExportDesignPointResults(inside, L"x=1", true));
  EXPECT_EQ(CountTraces(TakeTraces(), Failed(From(L"a/"), inside.FilePath() + L"Design.files/a/")), 1);
  EXPECT_FALSE(LFN_Exists(LongFileName(inside.FilePath() + L"Design.files/a")));
}

TEST_F(ExportResultFiles, ReachedAgainByALinkKeepTheirContents) {
  SolveTwoPoints();
  Put("work", "unsaved");
  Put("saved", "saved");
  std::filesystem::create_directory(m_folder / "exported");
  std::filesystem::create_directory_symlink(m_folder / "results/Design.files", m_folder / "exported/Design.files");
  Product().files = {L"work"};
  Product().renamed = {{L"work", L"saved"}};
  EXPECT_TRUE(Export(L"x=1", false));
  EXPECT_EQ(Exported("saved"), "saved");
  EXPECT_EQ(CountTraces(TakeTraces(), Failed(From(L"work"), To(L"saved"))), 1);
}

} // namespace
