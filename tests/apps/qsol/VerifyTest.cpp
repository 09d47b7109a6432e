#include "apps/qsol/CompactVerb.h"
#include "tests/apps/qsol/QsolFixture.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/RecordFormat.h"
#include "basekit/text/Utf8.h"
#include "viewkit/library/CStreamioLibWritePrivate.h"

#include <filesystem>

#include <sys/stat.h>

class VerifiedLibrary : public QsolFixture {
protected:
  Json Found(int expectedCode) const {
    qsol::VerifyOptions options;
    options.json = true;
    auto const told = Verify(options);
    EXPECT_EQ(told.code, expectedCode);
    return told.Document();
  }
  void SaveUncommitted() const {
    SolutionFileManager writer{LongFileName(text::FromUtf8(File()))};
    writer.LoadRealToInternalBlockNameMap();
    Save(writer, DataName(L"a=7"), 1234.5);
  }
};

TEST_F(VerifiedLibrary, ThatIsWholeIsFine) {
  MakeLibrary();
  auto const told = Verify();
  EXPECT_EQ(told.code, 0);
  EXPECT_NE(told.out.find("fine (committed)"), std::string::npos);
  EXPECT_NE(told.out.find("8 of 8 blocks good"), std::string::npos);
}

TEST_F(VerifiedLibrary, ChecksThePrivateFileToo) {
  MakeLibrary();
  SaveUncommitted();
  EXPECT_EQ(Found(0)["shown"], "committed and private");
  Spoil(Twin(), "Value = 1234.5");
  auto const found = Found(1);
  ASSERT_EQ(found["damages"].size(), 1u);
  EXPECT_EQ(found["damages"][0]["file"], Twin());
  qsol::VerifyOptions options;
  options.view.committedOnly = true;
  EXPECT_EQ(Verify(options).code, 0);
}

TEST_F(VerifiedLibrary, NamesTheDamagedBlockItsPlaceAndWhatIsGood) {
  MakeLibrary();
  std::string const name = InternalName(DataName(L"a=2; b=3"));
  auto const at = Bytes(File()).find("Value = 4242.5");
  Spoil(File(), "Value = 4242.5");
  auto const found = Found(1);
  EXPECT_FALSE(found["fine"]);
  ASSERT_EQ(found["damages"].size(), 1u);
  auto const & damage = found["damages"][0];
  EXPECT_EQ(damage["file"], File());
  EXPECT_LT(damage["offset"].get<std::size_t>(), at);
  EXPECT_GT(damage["offset"].get<std::size_t>() + damage["length"].get<std::size_t>(), at);
  EXPECT_EQ(damage["lost"][0]["name"], name);
  EXPECT_EQ(damage["lost"][0]["real_name"], text::ToUtf8(DataName(L"a=2; b=3")));
  EXPECT_EQ(found["good_blocks"], 7);
  EXPECT_EQ(found["lost_blocks"], 1);
  auto const told = Verify();
  EXPECT_NE(told.out.find("lost: " + name + " (data setup=3 solution=5 version=12 a=2; b=3)"), std::string::npos);
  EXPECT_NE(told.out.find("7 of 8 blocks good"), std::string::npos);
}

TEST_F(VerifiedLibrary, DamageOfASupersededRecordIsToldAsANoteAndLosesNoBlock) {
  {
    CStreamioLibWritePrivate library(LongFileName(text::FromUtf8(File())), CStreamioLibWritePrivate::kOrdinaryMode);
    for (wchar_t const * const text : {L"former", L"present"}) {
      io::CBlock block(L"A");
      block << io::CBlock_named_value(L"Text", io::CBlock_value(text));
      library.SaveDefinition(block);
      library.CommitAll(false);
    }
  }
  Spoil(File(), "former");
  auto const found = Found(0);
  EXPECT_TRUE(found["fine"]);
  EXPECT_TRUE(found["damages"].empty());
  EXPECT_EQ(found["lost_blocks"], 0);
  EXPECT_NE(found["remarks"].dump().find("a later record of block A replaced them"), std::string::npos);
}

TEST_F(VerifiedLibrary, ABlockBehindADamagedRecordHeaderIsGoodAndNotLost) {
  MakeLibrary();
  std::string const name = InternalName(DataName(L"a=2; b=3"));
  std::string const bytes = Bytes(File());
  auto const content = bytes.find("Value = 4242.5");
  ASSERT_NE(content, bytes.npos);
  auto const header = bytes.rfind("#q 01 ", content);
  std::string damaged = bytes;
  damaged[header + 20] ^= 1;
  SetBytes(File(), damaged);
  auto const found = Found(1);
  ASSERT_EQ(found["damages"].size(), 1u);
  EXPECT_TRUE(found["damages"][0]["lost"].empty());
  EXPECT_EQ(found["damages"][0]["good"][0]["name"], name);
  EXPECT_EQ(found["lost_blocks"], 0);
  auto const told = Verify();
  EXPECT_NE(told.out.find(name + " (data setup=3 solution=5 version=12 a=2; b=3): its record header is damaged, the "
                                 "block itself is good"),
            std::string::npos)
      << told.out;
  EXPECT_EQ(told.out.find("lost"), std::string::npos) << told.out;
  EXPECT_NE(told.out.find("8 of 8 blocks good"), std::string::npos) << told.out;
  EXPECT_EQ(Show({name}).out, name + " {\n  Value = 4242.5\n}\n");
  EXPECT_EQ(Perform(qsol::Compact, qsol::RewriteOptions{}).code, 0);
  EXPECT_EQ(Verify().code, 0);
  EXPECT_EQ(Show({text::ToUtf8(DataName(L"a=2; b=3"))}).code, 0);
}

TEST_F(VerifiedLibrary, ABlockBehindADamagedNameIsGoodAndNotLost) {
  MakeLibrary();
  std::string bytes = Bytes(File());
  auto const header = bytes.rfind("#q 01 ", bytes.find("Value = 4242.5"));
  bytes[bytes.find('\n', header) + 1] ^= 1;
  SetBytes(File(), bytes);
  auto const told = Verify();
  EXPECT_EQ(told.code, 1);
  EXPECT_NE(told.out.find("its name there is damaged, the block itself is good"), std::string::npos) << told.out;
  EXPECT_EQ(told.out.find("lost"), std::string::npos) << told.out;
}

TEST_F(VerifiedLibrary, EveryFlippedBitBeforeTheLastCommitIsToldAndNoDamagedBlockIsShown) {
  MakeLibrary();
  std::string const whole = Bytes(File());
  // The second copy of the commit record is behind what the first one commits, so its loss is a torn tail.
  auto const lastCommit = whole.rfind("#q 04 ");
  for (std::size_t at = 0; at < lastCommit; at += 7) {
    std::string bytes = whole;
    bytes[at] = static_cast<char>(bytes[at] ^ (1 << at % 8));
    SetBytes(File(), bytes);
    auto const told = Verify();
    EXPECT_TRUE(told.code == 1 || (told.code >= 4 && at < io::kFileHeaderSize)) << "byte " << at << ": " << told.code;
  }
}

TEST_F(VerifiedLibrary, CutAnywhereItIsAnEarlierStateOrToldToBeNone) {
  MakeLibrary();
  SaveUncommitted();
  std::filesystem::remove(Twin());
  std::string const whole = Bytes(File());
  for (std::size_t length = 0; length < whole.size(); length += 13) {
    SetBytes(File(), whole.substr(0, length));
    auto const told = Verify();
    EXPECT_LE(told.code, 4) << length;
    if (told.code == 0) {
      EXPECT_NE(told.out.find("don't count"), std::string::npos) << length << ": " << told.out;
      EXPECT_NE(told.out.find("or the file was cut"), std::string::npos) << length << ": " << told.out;
      EXPECT_NE(told.out.find(": fine up to its last commit (committed)"), std::string::npos) << told.out;
    }
  }
}

TEST_F(VerifiedLibrary, APrivateFileCutAnywhereIsAPrefixAndFine) {
  MakeLibrary();
  SaveUncommitted();
  std::string const whole = Bytes(Twin());
  for (std::size_t length = io::kFileHeaderSize; length < whole.size(); length += 5) {
    SetBytes(Twin(), whole.substr(0, length));
    auto const told = Verify();
    EXPECT_EQ(told.code, 0) << length;
    bool const hasTail = told.out.find("don't count") != std::string::npos;
    EXPECT_EQ(told.out.find("fine up to its last save") != std::string::npos, hasTail) << told.out;
  }
}

TEST_F(VerifiedLibrary, EntriesWithoutABlockAndBlocksWithoutAnEntryAreToldAndNoDamage) {
  MakeLibrary();
  std::string const gone = InternalName(DataName(L"a=1"));
  {
    CStreamioLibWritePrivate library(LongFileName(text::FromUtf8(File())), CStreamioLibWritePrivate::kOrdinaryMode);
    library.DeleteDefinition(text::FromUtf8(gone));
    io::CBlock orphan(L"SolutionBlock77");
    io::CBlock own(L"Own");
    library.SaveDefinition(orphan);
    library.SaveDefinition(own);
    library.CommitAll(false);
  }
  auto const found = Found(0);
  ASSERT_EQ(found["dangling"].size(), 1u);
  EXPECT_EQ(found["dangling"][0]["name"], gone);
  EXPECT_EQ(found["dangling"][0]["real_name"], text::ToUtf8(DataName(L"a=1")));
  EXPECT_EQ(found["unmapped"], Json({"SolutionBlock77"}));
  EXPECT_EQ(found["remarks"].size(), 2u);
}

TEST_F(VerifiedLibrary, ALostMapIsToldOnceAndNotAsManyUnmappedBlocks) {
  MakeLibrary();
  Spoil(File(), "BlockMapName {");
  auto const found = Found(1);
  EXPECT_EQ(found["damages"].size(), 1u);
  EXPECT_TRUE(found["unmapped"].empty());
}

TEST_F(VerifiedLibrary, APrivateFileOfAnotherGenerationIsCheckedByItself) {
  MakeLibrary();
  SaveUncommitted();
  std::filesystem::copy_file(Twin(), File("kept"));
  {
    SolutionFileManager writer{LongFileName(text::FromUtf8(File()))};
    writer.RewriteLibrary(false);
    writer.LoadRealToInternalBlockNameMap();
    Save(writer, DataName(L"a=8"), 1);
    writer.CommitAll(false);
  }
  std::filesystem::copy_file(File("kept"), Twin(), std::filesystem::copy_options::overwrite_existing);
  EXPECT_EQ(Found(0)["private_state"], "of another generation");
  Spoil(Twin(), "Value = 1234.5");
  EXPECT_EQ(Found(1)["damages"][0]["file"], Twin());
  SetBytes(Twin(), "nothing of ours, and longer than a header is: " + std::string(100, 'x'));
  EXPECT_EQ(Found(1)["damages"][0]["file"], Twin());
}

TEST_F(VerifiedLibrary, WhatIsNoLibraryHasACodeOfItsOwnAndALineWithARemedy) {
  struct Case {
    char const * content;
    int code;
    char const * line;
  };
  EXPECT_EQ(Verify().code, 3);
  EXPECT_TRUE(Verify().Notes("there is no such file; check the path"));
  for (Case const & each :
       {Case{"", 4, "is empty"}, Case{"#qs", 4, "holds no whole header: cut off, or nothing was stored yet"},
        Case{"not one of ours, whatever it may be", 4, "is no block library"}}) {
    SetBytes(File(), each.content);
    EXPECT_EQ(Verify().code, each.code) << each.content;
    EXPECT_TRUE(Verify().Notes(each.line)) << each.content;
    EXPECT_EQ(List().code, each.code);
    EXPECT_EQ(Stats().code, each.code);
    EXPECT_EQ(Show({"A"}).code, each.code);
  }
}

TEST_F(VerifiedLibrary, ALaterFormatIsRefused) {
  MakeLibrary();
  std::string bytes = Bytes(File());
  io::FileHeader header;
  ASSERT_EQ(io::ParseFileHeader(bytes, header), io::HeaderState::Good);
  header.version = 2;
  bytes.replace(0, io::kFileHeaderSize, io::FormatFileHeader(header));
  SetBytes(File(), bytes);
  auto const told = Verify();
  EXPECT_EQ(told.code, 5);
  EXPECT_TRUE(told.Notes("use a later qsol"));
}

TEST_F(VerifiedLibrary, FoldersPipesAndLinksToNowhereAreRefusedWithoutWaiting) {
  std::filesystem::create_directory(File());
  EXPECT_EQ(Verify().code, 3);
  EXPECT_TRUE(Verify().Notes("is a folder"));
  std::filesystem::remove(File());
  ASSERT_EQ(::mkfifo(File().c_str(), 0600), 0);
  EXPECT_EQ(Verify().code, 3);
  EXPECT_TRUE(Verify().Notes("is no regular file"));
  std::filesystem::remove(File());
  std::filesystem::create_symlink("nowhere", File());
  EXPECT_EQ(Verify().code, 3);
  EXPECT_TRUE(Verify().Notes("leads nowhere"));
  std::filesystem::remove(File());
  MakeLibrary();
  ASSERT_EQ(::mkfifo(Twin().c_str(), 0600), 0);
  EXPECT_EQ(Verify().code, 1) << "a pipe in the private file's place is wrong, the library is read";
  EXPECT_EQ(List().code, 0);
}
