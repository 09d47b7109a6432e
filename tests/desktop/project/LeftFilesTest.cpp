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

/// A bit of the data block of the point that was solved with the value.
std::string WithDamagedData(std::string const & content, std::string const & value) {
  std::size_t const at = content.find("Values(" + value);
  EXPECT_NE(at, std::string::npos);
  return Flipped(content, at + 8);
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
  void Lay(Found const & found) const;
  void Check(Found const & found);
  void CheckRefused(std::string const & blamed);
  void CheckOpened(Found const & found);
  void CheckFlip(std::size_t at, char const * file, std::string const & whole);
  void CheckKept(std::map<std::string, std::string> const & before, bool isPrivateFileUsed) const;
  void CheckSave(bool isDamageToTell) const;
  void Put(std::string const & name, Content const & content) const {
    std::filesystem::remove(m_folder / name);
    if (content)
      Write(name, *content);
  }
  static std::string LastErrorOf(desktop::Session & session) {
    return text::ToUtf8(session.GetManager().GetSolutionFileManager().GetLibraryForDirectAccess().LastError());
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
  int m_lost = 0; ///< flips that cost a point, and flips that make the project refused
  int m_refused = 0;
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
  m_libraries["damaged"] = WithDamagedData(library, "0.1");

  m_privateFiles["none"] = std::nullopt;
  m_privateFiles["closed"] = closed;
  m_privateFiles["left by a crash"] = crashed;
  m_privateFiles["half written"] = crashed.substr(0, crashed.size() - 20);
  m_privateFiles["empty"] = "";
  m_privateFiles["foreign"] = "something else\n";
  m_privateFiles["newer"] = NewerLibrary(crashed, true);
  m_privateFiles["damaged"] = WithDamagedData(crashed, "0.4");
  m_privateFiles["closed, damaged"] = WithDamagedData(closed, "0.3");
}

void LeftFiles::Lay(Found const & found) const {
  for (auto const & entry : std::filesystem::directory_iterator(m_folder.Path()))
    if (entry.path().filename().string().starts_with("study"))
      std::filesystem::remove_all(entry.path());
  std::filesystem::create_directory(m_folder / "study.results");
  Put(kProject, m_projects.at(found.project));
  Put(kAutosave, m_autosaves.at(found.autosave));
  Put(kLibrary, m_libraries.at(found.library));
  Put(kPrivate, m_privateFiles.at(found.privateFile));
}

void LeftFiles::Check(Found const & found) {
  SCOPED_TRACE("project " + found.project + ", autosave " + found.autosave + ", library " + found.library +
               ", private file " + found.privateFile);
  Lay(found);
  bool const isLibraryRefused = found.library == "empty" || found.library == "foreign" || found.library == "newer";
  if (found.project != "good")
    CheckRefused(kProject);
  else if (isLibraryRefused)
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
  // Damaged is the data of one point alone, which costs no other.
  bool const isLibraryWhole = found.library == "good" || found.library == "damaged";
  bool const adoptsClosed = isLibraryWhole && found.privateFile == "closed";
  bool const adoptsDamaged = isLibraryWhole && found.privateFile == "closed, damaged";
  bool const hasLost = isLibraryWhole && found.privateFile == "damaged";
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
    if (found.library == "good") {
      EXPECT_EQ(ValueOf(*session, kSaved), 0.1);
    }
    if (found.library == "damaged") {
      EXPECT_EQ(ValueOf(*session, kSaved), std::nullopt);
      EXPECT_NE(LastErrorOf(*session).find("circuit.qsol: block "), std::string::npos) << LastErrorOf(*session);
      EXPECT_NE(LastErrorOf(*session).find(" is damaged"), std::string::npos) << LastErrorOf(*session);
    }
    if (adoptsClosed) {
      EXPECT_EQ(ValueOf(*session, kClosed), 0.3);
    }
    if (takesOver) {
      EXPECT_EQ(ValueOf(*session, isSavedInPart ? L"C=7; L=2" : kCrashed), isSavedInPart ? 0.7 : 0.4);
    }
    if (adoptsDamaged) {
      EXPECT_EQ(ValueOf(*session, kClosed), std::nullopt);
    }
    if (hasLost) {
      EXPECT_EQ(ValueOf(*session, kCrashed), std::nullopt);
    }
    EXPECT_EQ(told.find("recovered 1 point") != std::string::npos, takesOver) << told;
    EXPECT_EQ(told.find("1 block was not taken over: its block is lost") != std::string::npos, hasLost) << told;
    bool const isAutosaveLeft = found.autosave != "good" && found.autosave != "none";
    EXPECT_EQ(told.find("study.sproject.auto: ") != std::string::npos, isAutosaveLeft) << told;
    EXPECT_EQ(told.find("library is missing") != std::string::npos, found.library == "missing") << told;
    EXPECT_EQ(told.find("behind the last commit") != std::string::npos, found.library == "half written") << told;
  }
  bool const isSaved = isLibraryWhole && found.privateFile == "saved already";
  CheckKept(before, takesOver || hasLost || isSaved);
  CheckSave(adoptsDamaged);
  auto const session = Open();
  // A save that has nothing to store leaves the cut end where it is.
  EXPECT_LE(session->GetNotices().size(), found.library == "half written" ? 1u : 0u);
  EXPECT_FALSE(session->HasUnsavedChanges());
}

// What is not in use stands under some name.
void LeftFiles::CheckKept(std::map<std::string, std::string> const & before, bool isPrivateFileUsed) const {
  auto const after = Contents();
  for (auto const & [name, content] : before) {
    bool const isUsed = name == kLibrary || (name == kPrivate && (isPrivateFileUsed || content.empty()));
    bool const isKept = std::any_of(after.begin(), after.end(), [&, &wanted = content](auto const & file) {
      return file.second.starts_with(wanted);
    });
    EXPECT_TRUE(isUsed || isKept) << name;
  }
}

// Unsaved data that are damaged are told once; all else is stored all the same.
void LeftFiles::CheckSave(bool isDamageToTell) const {
  auto const session = Open();
  auto const refusal = RefusalOf([&] { session->Save(); });
  EXPECT_EQ(refusal.kind.has_value(), isDamageToTell) << refusal.text;
  if (!isDamageToTell)
    return;
  EXPECT_EQ(refusal.kind, ErrorKind::kStorage);
  EXPECT_NE(refusal.text.find("circuit.qsol_priv: block "), std::string::npos) << refusal.text;
  EXPECT_NE(refusal.text.find("is damaged); save again to save all else"), std::string::npos) << refusal.text;
  EXPECT_FALSE(RefusalOf([&] { session->Save(); }).kind.has_value());
}

// Whatever is opened shows the numbers that were stored, or none; whatever is refused is left as it is.
void LeftFiles::CheckFlip(std::size_t at, char const * file, std::string const & whole) {
  SCOPED_TRACE(std::string(file) + " with a bit flipped at " + std::to_string(at));
  Lay({"good", "none", "good", "left by a crash"});
  Put(file, Flipped(whole, at));
  auto const before = Contents();
  auto const refusal = RefusalOf([&] {
    auto const session = Open();
    EXPECT_EQ(ValueOf(*session, kSaved).value_or(0.1), 0.1);
    EXPECT_EQ(ValueOf(*session, kCrashed).value_or(0.4), 0.4);
    m_lost += !ValueOf(*session, kSaved) || !ValueOf(*session, kCrashed);
    if (file == std::string(kPrivate)) {
      EXPECT_EQ(ValueOf(*session, kSaved), 0.1);
    }
  });
  if (!refusal.kind)
    return;
  ++m_refused;
  EXPECT_EQ(refusal.kind, ErrorKind::kProject);
  EXPECT_NE(refusal.text.find("circuit.qsol"), std::string::npos) << refusal.text;
  EXPECT_NE(refusal.text.find("; "), std::string::npos) << refusal.text;
  EXPECT_EQ(Contents(), before);
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

TEST_F(LeftFiles, WithABitFlippedAnywhereShowTheNumbersThatWereStoredOrNone) {
  constexpr std::size_t kPlaces = 60;
  for (auto const & [file, whole] :
       {std::pair(kLibrary, *m_libraries.at("good")), std::pair(kPrivate, *m_privateFiles.at("left by a crash"))})
    for (std::size_t place = 0; place < kPlaces; ++place)
      CheckFlip(place * whole.size() / kPlaces, file, whole);
  EXPECT_GT(m_lost, 0);
  EXPECT_GT(m_refused, 0);
}
