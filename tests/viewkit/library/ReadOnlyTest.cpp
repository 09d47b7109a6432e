#include "basekit/file/FileOperations.h"
#include "tests/viewkit/library/LibraryFixture.h"
#include "viewkit/library/LibraryReader.h"

class ReadOnlyLibrary : public LibraryFixture {};

TEST_F(ReadOnlyLibrary, ShowsTheCommittedStateBesideAWriter) {
  Library writer(Path(), Library::kOrdinaryMode);
  Save(writer, L"A", L"one");
  ASSERT_EQ(writer.CommitAll(false), 0);
  Save(writer, L"A", L"two");
  Library reader;
  reader.SetReadOnly(true);
  reader.SetLibPath(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(reader, L"A"), L"one");
  EXPECT_FALSE(reader.HasUnsavedChanges());
}

TEST_F(ReadOnlyLibrary, PassesOverAPrivateFileThatWasClosedInOrder) {
  {
    Library writer(Path(), Library::kOrdinaryMode);
    Save(writer, L"A", L"one");
    ASSERT_EQ(writer.CommitAll(false), 0);
    Save(writer, L"A", L"two");
  }
  Library reader;
  reader.SetReadOnly(true);
  reader.SetLibPath(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(reader, L"A"), L"one");
}

TEST_F(ReadOnlyLibrary, ShowsAnEarlierCommitByTheLengthThatTheFileHadThen) {
  Library writer(Path(), Library::kOrdinaryMode);
  Save(writer, L"A", L"one");
  ASSERT_EQ(writer.CommitAll(false), 0);
  auto const length = writer.CommittedLength();
  Save(writer, L"A", L"two");
  Save(writer, L"B", L"two");
  ASSERT_EQ(writer.CommitAll(false), 0);
  Library reader;
  reader.SetReadOnlyAt(length);
  reader.SetLibPath(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(reader, L"A"), L"one");
  EXPECT_EQ(Save(reader, L"C", L"three"), Library::kLibLocked);
  library::LibraryReader earlier;
  ASSERT_EQ(earlier.OpenEarlier(Path(), length), Library::kLibSuccess);
  EXPECT_EQ(earlier.List().size(), 1u);
  EXPECT_EQ(earlier.PublicFacts().length, length);
}

TEST_F(ReadOnlyLibrary, RefusesEveryWriteAndLeavesTheFolderAsItWas) {
  {
    Library writer(Path(), Library::kOrdinaryMode);
    Save(writer, L"A", L"one");
    ASSERT_EQ(writer.CommitAll(false), 0);
  }
  Library reader;
  reader.SetReadOnly(true);
  reader.SetLibPath(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Save(reader, L"B", L"two"), Library::kLibLocked);
  EXPECT_EQ(reader.DeleteDefinition(L"A"), Library::kLibLocked);
  EXPECT_EQ(reader.RewriteLibrary(false), Library::kLibLocked);
  reader.DeleteLibrary();
  EXPECT_TRUE(LFN_Exists(Path()));
  EXPECT_FALSE(LFN_Exists(PrivateOf(Path())));
}
