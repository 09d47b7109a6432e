#include "basekit/file/FileOperations.h"
#include "tests/viewkit/library/LibraryFixture.h"

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
