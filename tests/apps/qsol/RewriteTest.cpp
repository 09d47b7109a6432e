#include "apps/qsol/CompactVerb.h"
#include "apps/qsol/ConvertVerb.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "tests/apps/qsol/QsolFixture.h"

#include <bit>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>

#include <sys/stat.h>

using qsol::RewriteOptions;

class RewrittenLibrary : public QsolFixture {
protected:
  Told Compact(bool commit = false) const {
    RewriteOptions options;
    options.commit = commit;
    options.json = true;
    return Perform(qsol::Compact, options);
  }
  Told Convert(bool toBinary) const {
    RewriteOptions options;
    options.toBinary = toBinary;
    options.json = true;
    return Perform(qsol::Convert, options);
  }
  Json Blocks() const {
    qsol::ShowOptions options;
    options.json = true;
    options.view.withPrivate = true;
    auto const shown = Show({"FileHeader", Name(L"a=1"), Name(L"a=2; b=3")}, options).Document()["blocks"];
    Json items = Json::array();
    for (auto const & block : shown)
      items.push_back(block.at("items"));
    return items;
  }
  static std::string Name(AString const & variation) { return text::ToUtf8(DataName(variation)); }
  void SaveAgain(int times) {
    SolutionFileManager files{Path(File())};
    files.LoadRealToInternalBlockNameMap();
    for (int i = 0; i < times; ++i)
      Save(files, DataName(L"a=1"), 0.1);
    ASSERT_EQ(files.UpdateOriginal(), CStreamioLibrary::kLibSuccess);
    ASSERT_EQ(files.CommitAll(false), CStreamioLibrary::kLibSuccess);
  }
  void SaveUncommitted() const {
    SolutionFileManager files{Path(File())};
    files.LoadRealToInternalBlockNameMap();
    Save(files, DataName(L"a=7"), 7);
  }
};

TEST_F(RewrittenLibrary, IsSmallerAndHoldsTheSame) {
  MakeLibrary();
  for (int i = 0; i < 10; ++i)
    SaveAgain(1);
  auto const before = Blocks();
  auto const size = std::filesystem::file_size(File());
  auto const told = Compact();
  ASSERT_EQ(told.code, 0) << told.notes.front();
  EXPECT_EQ(told.Document()["bytes_before"], size);
  EXPECT_EQ(told.Document()["bytes_after"], std::filesystem::file_size(File()));
  EXPECT_LT(std::filesystem::file_size(File()), size / 2);
  EXPECT_EQ(Blocks(), before);
  EXPECT_EQ(Verify().code, 0);
  EXPECT_FALSE(std::filesystem::exists(Twin()));
}

TEST_F(RewrittenLibrary, IsLeftAloneWhileAnotherLibraryWritesIt) {
  MakeLibrary();
  SolutionFileManager writer{Path(File())};
  writer.LoadRealToInternalBlockNameMap();
  Save(writer, DataName(L"a=7"), 7);
  auto const bytes = Bytes(File());
  auto const told = Compact(true);
  EXPECT_EQ(told.code, 1);
  EXPECT_TRUE(told.Notes("another process is writing it"));
  EXPECT_EQ(Bytes(File()), bytes);
  Save(writer, DataName(L"a=8"), 8);
}

TEST_F(RewrittenLibrary, TakesWorkThatIsNotCommittedOnRequestOnly) {
  MakeLibrary();
  SaveUncommitted();
  auto const bytes = Bytes(File());
  auto const told = Compact();
  EXPECT_EQ(told.code, 1);
  EXPECT_TRUE(told.Notes("--commit"));
  EXPECT_EQ(Bytes(File()), bytes);
  EXPECT_TRUE(std::filesystem::exists(Twin()));
  auto const taken = Compact(true);
  ASSERT_EQ(taken.code, 0);
  EXPECT_EQ(taken.Document()["committed"], true);
  EXPECT_FALSE(std::filesystem::exists(Twin()));
  EXPECT_EQ(Show({Name(L"a=7")}).code, 0);
}

TEST_F(RewrittenLibrary, IsLeftAloneBesideWhatACrashLeft) {
  MakeLibrary();
  {
    SolutionFileManager writer{Path(File())};
    writer.LoadRealToInternalBlockNameMap();
    Save(writer, DataName(L"a=7"), 7);
    std::filesystem::copy_file(Twin(), File("crashed"));
  }
  std::filesystem::rename(File("crashed"), Twin());
  auto const bytes = Bytes(File());
  for (bool const commit : {false, true}) {
    auto const told = Compact(commit);
    EXPECT_EQ(told.code, 1);
    EXPECT_TRUE(told.Notes("a crash left"));
  }
  EXPECT_EQ(Bytes(File()), bytes);
}

TEST_F(RewrittenLibrary, IsLeftAloneWhenABlockIsDamaged) {
  MakeLibrary();
  Spoil(File(), "4242.5");
  auto const bytes = Bytes(File());
  EXPECT_EQ(Compact().code, 1);
  EXPECT_EQ(Convert(true).code, 1);
  auto const told = Compact();
  EXPECT_TRUE(told.Notes("nothing was changed"));
  EXPECT_EQ(Bytes(File()), bytes);
  EXPECT_FALSE(std::filesystem::exists(File() + ".new"));
}

TEST_F(RewrittenLibrary, IsRefusedWhereItIsNoLibraryByItself) {
  MakeLibrary();
  std::filesystem::create_symlink(File(), File("link.qsol"));
  RewriteOptions options;
  options.file = File("link.qsol");
  EXPECT_TRUE(Perform(qsol::Compact, options).Notes("is a link"));
  options.file = File("nowhere.qsol");
  EXPECT_EQ(Perform(qsol::Compact, options).code, 3);
  SaveUncommitted();
  options.file = Twin();
  EXPECT_TRUE(Perform(qsol::Compact, options).Notes("is a private file"));
  std::filesystem::remove(Twin());
  ASSERT_EQ(::mkfifo(Twin().c_str(), 0600), 0);
  EXPECT_TRUE(Compact().Notes("is no regular file"));
}

TEST_F(RewrittenLibrary, ConvertsThereAndBackToTheLastBit) {
  MakeLibrary();
  std::vector<double> const numbers{0.1,   -0.0,  5e-324, std::numeric_limits<double>::max(),
                                    1e300, 2.0e9, 3.0,    std::bit_cast<double>(0xfff0000000000123)};
  {
    SolutionFileManager files{Path(File())};
    files.LoadRealToInternalBlockNameMap();
    io::CBlock block(DataName(L"a=1"));
    io::CBlock_func samples(L"S");
    samples.AppendReals(numbers);
    block << samples << io::named(L"T", L"\x1F600 \n \xD800");
    ASSERT_EQ(files.SaveDefinition(block), CStreamioLibrary::kLibSuccess);
    ASSERT_EQ(files.CommitAll(false), CStreamioLibrary::kLibSuccess);
  }
  auto const before = Show({Name(L"a=1")}).out;
  for (bool const toBinary : {true, false, true}) {
    auto const told = Convert(toBinary);
    ASSERT_EQ(told.code, 0) << told.notes.front();
    EXPECT_EQ(Show({Name(L"a=1")}).out, before);
    qsol::ListOptions options;
    options.json = true;
    auto const document = List(options).Document();
    for (auto const & block : document["blocks"])
      EXPECT_EQ(block["form"], toBinary ? "binary" : "text");
    EXPECT_EQ(Verify().code, 0);
  }
  SolutionFileManager files{Path(File())};
  files.LoadRealToInternalBlockNameMap();
  io::CBlock block(DataName(L"a=1"));
  ASSERT_EQ(files.LoadDefinition(block), CStreamioLibrary::kLibSuccess);
  io::CBlock_func samples(L"S");
  block >> samples;
  ASSERT_EQ(samples.AllReals().size(), numbers.size());
  for (std::size_t i = 0; i < numbers.size(); ++i)
    EXPECT_EQ(std::bit_cast<std::uint64_t>(samples.AllReals()[i]), std::bit_cast<std::uint64_t>(numbers[i]));
}

TEST_F(RewrittenLibrary, IsLeftAloneWhileItsProjectMayGoBackToWhatWasSaved) {
  MakeLibrary();
  std::string const saved = File() + "_saved";
  std::ofstream(saved) << "SavedLibrary {\n}\n";
  auto told = Compact();
  EXPECT_EQ(told.code, static_cast<int>(qsol::Exit::Failed));
  EXPECT_TRUE(told.Notes("solvedesk save PROJECT"));
  std::filesystem::remove(saved);

  std::filesystem::create_directory(m_folder / "study.results");
  std::filesystem::rename(File(), m_folder / "study.results/amp.qsol");
  std::ofstream(m_folder / "study.sproject.saving") << "Saving {\n}\n";
  RewriteOptions options;
  options.file = (m_folder / "study.results/amp.qsol").string();
  told = Perform(qsol::Compact, options);
  EXPECT_EQ(told.code, static_cast<int>(qsol::Exit::Failed));
  EXPECT_TRUE(told.Notes("study.sproject.saving: a save of the project"));
  std::filesystem::remove(m_folder / "study.sproject.saving");
  EXPECT_EQ(Perform(qsol::Compact, options).code, 0);
}
