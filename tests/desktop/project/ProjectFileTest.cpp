#include "desktop/project/ProjectFile.h"
#include "basekit/io/CNamed_value_manip.h"
#include "tests/desktop/support/SessionFixture.h"

using desktop::ErrorKind;
using desktop::ProjectFileKind;
using desktop::ProjectRecord;

class ProjectFile : public support::SessionTest {
protected:
  static ProjectRecord Record() {
    ProjectRecord record;
    record.productName = L"fake";
    record.designName = L"Entwurf \u00e4";
    record.designID = 4;
    record.generation = 7;
    record.sources = {{L"a \"b\".txt", 12, 0xffffffffu}, {L"/c/d.txt", 0, 0}};
    record.ids << io::named(L"NextUniqueID", 17);
    record.design << io::named(L"X", 1.5);
    record.module << io::named(L"Y", AString(L"Checksum(\"no\")"));
    return record;
  }
  Refusal RefusalOfFile(std::string const & content) {
    Write("study.sproject", content);
    return RefusalOf([&] { Open(); });
  }
};

TEST_F(ProjectFile, ReadsWhatWasWritten) {
  std::string const bytes = EncodeProject(Record(), ProjectFileKind::kAutosave);
  ProjectRecord const read = DecodeProject(bytes, ProjectFileKind::kAutosave, L"a");
  EXPECT_EQ(read.designName, L"Entwurf \u00e4");
  EXPECT_EQ(read.designID, 4);
  EXPECT_EQ(read.generation, 7);
  EXPECT_EQ(read.sources, Record().sources);
  EXPECT_EQ(EncodeProject(read, ProjectFileKind::kAutosave), bytes);
}

TEST_F(ProjectFile, TellsKindAndVersionInItsFirstLine) {
  std::string const bytes = EncodeProject(Record(), ProjectFileKind::kProject);
  EXPECT_EQ(bytes.substr(0, bytes.find('\n')), "SolutionProject(Kind = \"project\", Format = 1)");
}

TEST_F(ProjectFile, RefusesAMissingFileWithTheRemedy) {
  for (Access const access : {Access::kWrite, Access::kReadOnly}) {
    auto const refusal = RefusalOf([&] { Open(access); });
    EXPECT_EQ(refusal.kind, ErrorKind::kProject);
    EXPECT_NE(refusal.text.find("study.sproject: there is no such project"), std::string::npos);
    EXPECT_NE(refusal.text.find("solvedesk new"), std::string::npos);
  }
  EXPECT_FALSE(Exists("study.sproject.lock"));
}

TEST_F(ProjectFile, RefusesAFileCutAtAnyByte) {
  Create();
  std::string const whole = Read("study.sproject");
  for (std::size_t length = 0; length + 1 < whole.size(); ++length) {
    auto const refusal = RefusalOf([&] { DecodeProject(whole.substr(0, length), ProjectFileKind::kProject, L"a"); });
    ASSERT_EQ(refusal.kind, ErrorKind::kProject) << length;
    ASSERT_NE(refusal.text.find("is cut off"), std::string::npos) << length << ": " << refusal.text;
  }
  EXPECT_EQ(RefusalOfFile("").kind, ErrorKind::kProject);
  EXPECT_EQ(RefusalOfFile(whole.substr(0, whole.size() / 2)).kind, ErrorKind::kProject);
  EXPECT_FALSE(RefusalOfFile(whole).kind.has_value());
}

TEST_F(ProjectFile, RefusesAFileWithAnyBitFlipped) {
  Create();
  std::string const whole = Read("study.sproject");
  for (std::size_t bit = 0; bit < 8 * (whole.size() - 1); ++bit) {
    std::string damaged = whole;
    damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
    EXPECT_EQ(RefusalOf([&] { DecodeProject(damaged, ProjectFileKind::kProject, L"a"); }).kind, ErrorKind::kProject)
        << bit;
  }
}

TEST_F(ProjectFile, RefusesAForeignFile) {
  auto const refusal = RefusalOfFile("* a netlist\nR1 1 2 50\n");
  EXPECT_EQ(refusal.kind, ErrorKind::kProject);
  EXPECT_NE(refusal.text.find("this is no project file"), std::string::npos);
}

TEST_F(ProjectFile, RefusesAnAutosaveInPlaceOfAProject) {
  auto const refusal = RefusalOfFile(EncodeProject(Record(), ProjectFileKind::kAutosave));
  EXPECT_EQ(refusal.kind, ErrorKind::kProject);
  EXPECT_NE(refusal.text.find("of kind 'autosave'"), std::string::npos);
}

TEST_F(ProjectFile, RefusesANewerFormatWhateverItsContent) {
  auto const refusal = RefusalOfFile("SolutionProject(Kind = \"project\", Format = 2, More = 1)\n<<<\n");
  EXPECT_EQ(refusal.kind, ErrorKind::kProject);
  EXPECT_NE(refusal.text.find("has format 2"), std::string::npos);
  EXPECT_NE(refusal.text.find("newer"), std::string::npos);
}

TEST_F(ProjectFile, RefusesAFolder) {
  std::filesystem::create_directory(m_folder / "study.sproject");
  EXPECT_EQ(RefusalOf([&] { Open(); }).kind, ErrorKind::kProject);
}

TEST_F(ProjectFile, RefusesAFileThatMayNotBeRead) {
  Create();
  std::filesystem::permissions(m_folder / "study.sproject", std::filesystem::perms(0));
  WithoutRights([&] {
    auto const refusal = RefusalOf([&] { Open(Access::kReadOnly); });
    EXPECT_EQ(refusal.kind, ErrorKind::kProject);
    EXPECT_NE(refusal.text.find("ermission"), std::string::npos);
  });
}

TEST_F(ProjectFile, RefusesAProductThatTheProgramLacks) {
  Create();
  ProjectRecord record = DecodeProject(Read("study.sproject"), ProjectFileKind::kProject, L"a");
  record.productName = L"other";
  auto const refusal = RefusalOfFile(EncodeProject(record, ProjectFileKind::kProject));
  EXPECT_EQ(refusal.kind, ErrorKind::kProject);
  EXPECT_NE(refusal.text.find("needs the product 'other'"), std::string::npos);
}
