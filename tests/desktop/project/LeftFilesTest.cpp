// Every file of a project in every state in which it can be found: clear words, and nothing lost.
#include "basekit/io/RecordFormat.h"
#include "tests/desktop/support/SessionFixture.h"

#include <fstream>
#include <map>
#include <optional>

using desktop::ErrorKind;

namespace {

constexpr wchar_t kSaved[] = L"C=1; L=2";
constexpr wchar_t kClosed[] = L"C=3; L=2";
constexpr wchar_t kCrashed[] = L"C=4; L=2";

constexpr char kProject[] = "study.sproject";
constexpr char kAutosave[] = "study.sproject.auto";
constexpr char kLibrary[] = "study.results/circuit.qsol";
constexpr char kPrivate[] = "study.results/circuit.qsol_priv";

/// Content of a file; nothing for one that is not there.
using Content = std::optional<std::string>;
using States = std::map<std::string, Content>;

std::string Cut(std::string const & content) { return content.substr(0, content.size() / 2); }

std::string Flipped(std::string content, std::size_t at) {
  content[at] = static_cast<char>(content[at] ^ 4);
  return content;
}

std::string OfNewerFormat(std::string content) {
  std::string const now = "Format = 1";
  return content.replace(content.find(now), now.size(), "Format = 9");
}

std::string NewerLibrary(std::string const & content, bool isPrivate) {
  io::FileHeader header;
  header.version = 99;
  header.isPrivate = isPrivate;
  return io::FormatFileHeader(header) + content.substr(io::kFileHeaderSize);
}

struct Found {
  std::string project;
  std::string autosave;
  std::string library;
  std::string privateFile;
};

} // namespace

class LeftFiles : public support::SessionTest {
protected:
  void SetUp() override {
    MakeStates();
    std::filesystem::remove_all(m_folder / "study.results");
  }

  void MakeStates();
  void Check(Found const & found);
  void CheckRefused(std::string const & blamed);
  void CheckOpened(Found const & found);
  void Put(std::string const & name, Content const & content) const {
    std::filesystem::remove(m_folder / name);
    if (content)
      Write(name, *content);
  }
  std::map<std::string, std::string> Contents() const {
    std::map<std::string, std::string> contents;
    for (auto const & name : Names())
      if (std::filesystem::is_regular_file(m_folder / name))
        contents[name] = Read(name);
    return contents;
  }

  States m_projects;
  States m_autosaves;
  States m_libraries;
  States m_privateFiles;
};

void LeftFiles::MakeStates() {
  std::size_t firstCommit = 0;
  {
    auto const session = Create();
    firstCommit = Read(kLibrary).size();
    session->SetVariables({{L"C", L"7"}});
    EXPECT_EQ(Solve(*session, L"C=7; L=2", 0.7), 0);
    m_autosaves["of another generation"] = Read(kAutosave);
    m_privateFiles["saved already"] = Read(kPrivate);
    session->SetVariables({{L"C", L"1"}});
    EXPECT_EQ(Solve(*session, kSaved, 0.1), 0);
    session->Save();
  }
  std::string const project = Read(kProject);
  std::string const library = Read(kLibrary);
  {
    auto const session = Open();
    session->SetVariables({{L"C", L"9"}});
    EXPECT_EQ(Solve(*session, kClosed, 0.3), 0);
  }
  std::string const autosave = Read(kAutosave);
  std::string const closed = Read(kPrivate);
  std::filesystem::remove(m_folder / kPrivate);
  Crash([](desktop::Session & session) { Solve(session, kCrashed, 0.4); });
  std::string const crashed = Read(kPrivate);
  EXPECT_EQ(Read(kLibrary), library);
  std::filesystem::remove(m_folder / kAutosave);
  std::filesystem::remove(m_folder / kPrivate);

  {
    auto const other = desktop::Session::Create(PathOf("other"), PathOf("circuit.txt"), L"fake");
    EXPECT_EQ(Solve(*other, L"C=7; L=2", 0.7), 0);
    m_privateFiles["of another library"] = Read("other.results/circuit.qsol_priv");
  }

  m_projects["good"] = project;
  m_projects["missing"] = std::nullopt;
  m_projects["empty"] = "";
  m_projects["half written"] = Cut(project);
  m_projects["damaged"] = Flipped(project, project.size() / 2);
  m_projects["foreign"] = "something else\n";
  m_projects["newer"] = OfNewerFormat(project);
  m_projects["an autosave"] = autosave;

  m_autosaves["none"] = std::nullopt;
  m_autosaves["good"] = autosave;
  m_autosaves["empty"] = "";
  m_autosaves["half written"] = Cut(autosave);
  m_autosaves["damaged"] = Flipped(autosave, autosave.size() / 2);
  m_autosaves["foreign"] = "something else\n";
  m_autosaves["newer"] = OfNewerFormat(autosave);

  m_libraries["good"] = library;
  m_libraries["missing"] = std::nullopt;
  m_libraries["empty"] = "";
  m_libraries["half written"] = library.substr(0, (firstCommit + library.size()) / 2);
  m_libraries["foreign"] = "something else\n";
  m_libraries["newer"] = NewerLibrary(library, false);

  m_privateFiles["none"] = std::nullopt;
  m_privateFiles["closed"] = closed;
  m_privateFiles["left by a crash"] = crashed;
  m_privateFiles["half written"] = crashed.substr(0, crashed.size() - 20);
  m_privateFiles["empty"] = "";
  m_privateFiles["foreign"] = "something else\n";
  m_privateFiles["newer"] = NewerLibrary(crashed, true);
}

void LeftFiles::Check(Found const & found) {
  SCOPED_TRACE("project " + found.project + ", autosave " + found.autosave + ", library " + found.library +
               ", private file " + found.privateFile);
  for (auto const & entry : std::filesystem::directory_iterator(m_folder.Path()))
    if (entry.path().filename().string().starts_with("study"))
      std::filesystem::remove_all(entry.path());
  std::filesystem::create_directory(m_folder / "study.results");
  Put(kProject, m_projects.at(found.project));
  Put(kAutosave, m_autosaves.at(found.autosave));
  Put(kLibrary, m_libraries.at(found.library));
  Put(kPrivate, m_privateFiles.at(found.privateFile));
  bool const isGoodLibrary = found.library == "good" || found.library == "missing" || found.library == "half written";
  if (found.project != "good")
    CheckRefused(kProject);
  else if (!isGoodLibrary)
    CheckRefused("circuit.qsol");
  else
    CheckOpened(found);
}

// Named, with a remedy, by all who want to open it; and every file is as it was.
void LeftFiles::CheckRefused(std::string const & blamed) {
  auto const before = Contents();
  for (Access const access : {Access::kReadOnly, Access::kWrite}) {
    auto const refusal = RefusalOf([&] { Open(access); });
    EXPECT_EQ(refusal.kind, ErrorKind::kProject);
    EXPECT_NE(refusal.text.find(blamed + ": "), std::string::npos) << refusal.text;
    EXPECT_NE(refusal.text.find("; "), std::string::npos) << refusal.text;
    EXPECT_EQ(refusal.text.find('\n'), std::string::npos) << refusal.text;
  }
  EXPECT_EQ(Contents(), before);
}

void LeftFiles::CheckOpened(Found const & found) {
  auto const before = Contents();
  EXPECT_FALSE(RefusalOf([&] { Open(Access::kReadOnly); }).kind.has_value());
  EXPECT_EQ(Contents(), before);
  bool const isLibraryWhole = found.library == "good";
  bool const adoptsClosed = isLibraryWhole && found.privateFile == "closed";
  // Of the one that is half written the last record is cut, and the point stands before it.
  bool const hasCrashed = found.privateFile == "left by a crash" || found.privateFile == "half written";
  // What a save that was cut off did not come to.
  bool const isSavedInPart = found.library == "half written" && found.privateFile == "saved already";
  bool const takesOver = (isLibraryWhole && hasCrashed) || isSavedInPart;
  {
    auto const session = Open();
    std::string told;
    for (AString const & notice : session->GetNotices())
      told += text::ToUtf8(notice) + "\n";
    EXPECT_EQ(TextOf(*session, L"C"), AString(found.autosave == "good" ? L"9" : L"1"));
    if (isLibraryWhole) {
      EXPECT_EQ(ValueOf(*session, kSaved), 0.1);
    }
    if (adoptsClosed) {
      EXPECT_EQ(ValueOf(*session, kClosed), 0.3);
    }
    if (takesOver) {
      EXPECT_EQ(ValueOf(*session, isSavedInPart ? L"C=7; L=2" : kCrashed), isSavedInPart ? 0.7 : 0.4);
    }
    EXPECT_EQ(told.find("recovered 1 point") != std::string::npos, takesOver) << told;
    bool const isAutosaveLeft = found.autosave != "good" && found.autosave != "none";
    EXPECT_EQ(told.find("study.sproject.auto: ") != std::string::npos, isAutosaveLeft) << told;
    EXPECT_EQ(told.find("library is missing") != std::string::npos, found.library == "missing") << told;
    EXPECT_EQ(told.find("behind the last commit") != std::string::npos, found.library == "half written") << told;
  }
  // What is not in use stands under some name.
  auto const after = Contents();
  for (auto const & [name, content] : before) {
    bool const isSaved = isLibraryWhole && found.privateFile == "saved already";
    bool const isUsed = name == kLibrary || (name == kPrivate && (takesOver || isSaved || content.empty()));
    bool const isKept = std::any_of(after.begin(), after.end(), [&, &wanted = content](auto const & file) {
      return file.second.starts_with(wanted);
    });
    EXPECT_TRUE(isUsed || isKept) << name;
  }
  {
    auto const session = Open();
    EXPECT_FALSE(RefusalOf([&] { session->Save(); }).kind.has_value());
  }
  auto const session = Open();
  // A save that has nothing to store leaves the cut end where it is.
  EXPECT_LE(session->GetNotices().size(), found.library == "half written" ? 1u : 0u);
  EXPECT_FALSE(session->HasUnsavedChanges());
}

TEST_F(LeftFiles, OfAnyKindBesideAGoodProjectFileAreTakenSetAsideOrRefusedInClearWords) {
  for (auto const & [autosave, autosaveContent] : m_autosaves)
    for (auto const & [library, libraryContent] : m_libraries)
      for (auto const & [privateFile, privateContent] : m_privateFiles)
        Check({"good", autosave, library, privateFile});
}

TEST_F(LeftFiles, BesideAProjectFileThatCanNotBeReadStayAsTheyAre) {
  for (auto const & [project, content] : m_projects)
    for (auto const * const autosave : {"none", "good", "damaged"})
      for (auto const * const library : {"good", "missing", "foreign"})
        for (auto const * const privateFile : {"none", "closed", "left by a crash", "foreign"})
          if (project != "good")
            Check({project, autosave, library, privateFile});
}
