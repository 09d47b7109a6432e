#pragma once

#include "basekit/diag/Debug.h"
#include "basekit/diag/IMemoryTimeProfiler.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/Utf8.h"
#include "solutionmanager/transfer/ExportVariationContext.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "viewkit/library/LibraryReader.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <sstream>

namespace support {

/// A product whose hooks give what a test tells, and that notes what stood while they were asked.
class ExportingManager : public TestManager {
public:
  using TestManager::TestManager;
  AString GetDesignResultsFolderName() const override { return L"Design.files"; }
  bool GetFilesAndDirsToCopyForExportingVariation(std::map<AString, AString> & renames, std::vector<AString> & fileList,
                                                  std::vector<AString> & dirList,
                                                  AString const & variation) const override {
    asked.push_back(AString(L"files, unsaved, ") + variation);
    renames = renamed;
    fileList = files;
    dirList = dirs;
    return result;
  }
  bool GetFilesAndDirsToCopyForExportingVariation(std::vector<AString> & fileList, std::vector<AString> & dirList,
                                                  AString const & variation) const override {
    asked.push_back(AString(L"files, saved, ") + variation);
    fileList = files;
    dirList = dirs;
    return result;
  }
  bool GetQSolBlocksForExportingVariation(io::CBlock & blocks) const override {
    NoteContext();
    giveBlocks(blocks);
    return result;
  }
  bool GetQSolBlocksForExportingVariation(io::CBlock & blocks, std::vector<AString> & names) const override {
    NoteContext();
    giveBlocks(blocks);
    names = namesToDelete;
    return result;
  }

  std::map<AString, AString> renamed;
  std::vector<AString> files;
  std::vector<AString> dirs;
  std::vector<AString> namesToDelete;
  std::function<void(io::CBlock & blocks)> giveBlocks = [](io::CBlock &) {};
  bool result = true;
  mutable std::vector<AString> asked;

private:
  void NoteContext() const {
    ExportVariationContext const & context = *GetExportVariationContext();
    asked.push_back(AString(L"blocks, ") + (context.isSavedState ? L"saved, " : L"unsaved, ") +
                    context.designVariationKey + AString::Format(L", %d", context.designVariationID));
  }
};

/// Notes the spans of large operations as they begin, and both their ends ("+label", "-label"), while it lives.
class SpanWatch : public IMemoryTimeProfiler {
public:
  SpanWatch() : m_former(SetInstance(this)) {}
  ~SpanWatch() override { SetInstance(m_former); }
  void Begin(char const * label) override {
    spans.emplace_back(label);
    ends.push_back("+" + spans.back());
  }
  void End(char const * label) override { ends.push_back(std::string("-") + label); }

  std::vector<std::string> spans;
  std::vector<std::string> ends;

private:
  IMemoryTimeProfiler * m_former;
};

/// A design, and the folder that one of its points goes to.
class ExportTest : public ModelTest {
protected:
  ExportTest() {
    MakeManager(true);
    s_traces.clear();
    m_formerSink = diag::SetDebugSink([](AString const & category, int level, AString const & line) {
      s_traces.push_back(category + AString::Format(L" %d ", level) + line);
    });
  }
  ~ExportTest() override { diag::SetDebugSink(m_formerSink); }

  ExportingManager & Product() { return *m_product; }
  /// As another session that only reads: it holds no lock of the library.
  void OpenAgain() {
    MakeManager(false);
    EXPECT_EQ(m_manager->BuildUtilityCollections(), io::kNoError);
  }
  LongFileName Target() const { return LongFileName(text::FromUtf8((m_folder / "exported").string()) + L"/"); }
  AString TargetLibrary() const { return Target().FilePath() + L"Design.qsol"; }
  bool Export(AString const & variation, bool assumeSaved = true) {
    return Manager().ExportDesignPointResults(Target(), variation, assumeSaved);
  }
  /// Block names of a library with what they hold, in the order of the file.
  static std::vector<std::pair<AString, std::string>> BlocksOf(AString const & path) {
    std::vector<std::pair<AString, std::string>> blocks;
    library::LibraryReader reader;
    EXPECT_EQ(reader.OpenAlone(LongFileName(path)), CStreamioLibrary::kLibSuccess);
    for (auto const & entry : reader.List()) {
      io::CBlock block(entry.name);
      EXPECT_EQ(reader.Load(block), CStreamioLibrary::kLibSuccess);
      block.Name(L"");
      blocks.emplace_back(entry.name, text::ToUtf8(block.Pack()));
    }
    return blocks;
  }
  static std::set<AString> NamesOf(AString const & path) {
    std::set<AString> names;
    for (auto const & block : BlocksOf(path))
      names.insert(block.first);
    return names;
  }
  /// Real to internal names, as a library tells them.
  static std::map<AString, AString> NameMapOf(AString const & path) {
    std::map<AString, AString> names;
    library::LibraryReader reader;
    io::CBlock map(L"BlockMapName");
    EXPECT_EQ(reader.OpenAlone(LongFileName(path)), CStreamioLibrary::kLibSuccess);
    EXPECT_EQ(reader.Load(map), CStreamioLibrary::kLibSuccess);
    for (auto const & item : map) {
      AString internal;
      item->Query(internal);
      names[item->Name()] = internal;
    }
    return names;
  }
  AString Internal(AString const & realName) {
    return Manager().GetSolutionFileManager().GetInternalBlockName(realName);
  }
  static AString DataName(BaseSolution const & solution, AString const & variation) {
    return SolutionVariationKey(solution.GetBaseSimulationSetup().GetID(), variation, solution.GetID(),
                                solution.GetVersionID())
        .Pack();
  }
  AString Library() { return Manager().GetQsolPath(); }

  void Put(std::string const & name, std::string const & content) {
    std::filesystem::path const file = m_folder / "results/Design.files" / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << content;
  }
  static std::string BytesOf(AString const & path) {
    std::ifstream file(text::ToUtf8(path), std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
  }
  /// "-" when there is no such file.
  std::string Exported(std::string const & name) const {
    std::ifstream file(m_folder / "exported/Design.files" / name);
    std::ostringstream content;
    content << file.rdbuf();
    return file ? content.str() : "-";
  }
  /// The lines that were traced since the last call, without category and level, which are always the same.
  static std::vector<AString> TakeTraces() {
    std::vector<AString> lines;
    AString const head(L"SolutionManager 1 ");
    for (AString const & line : s_traces) {
      EXPECT_TRUE(line.StartsWith(head));
      lines.push_back(line.substr(head.size()));
    }
    s_traces.clear();
    return lines;
  }
  static int CountTraces(std::vector<AString> const & lines, AString const & line) {
    return static_cast<int>(std::count(lines.begin(), lines.end(), line));
  }

private:
  void MakeManager(bool isNew) {
    m_manager.reset();
    auto manager = std::make_unique<ExportingManager>(&m_design);
    m_product = manager.get();
    m_manager = std::move(manager);
    m_manager->InitializeFromDesign(isNew);
  }

  ExportingManager * m_product = nullptr;
  diag::DebugSink m_formerSink = nullptr;
  static inline std::vector<AString> s_traces;
};

/// A design of two points, x=1 and x=2, to be solved and saved.
class SavedPointsTest : public ExportTest {
protected:
  SavedPointsTest() : m_setup(AddSetup(L"A")), m_solution(SolutionOf(m_setup)) {}

  void SolveTwoPoints() {
    Solve(m_solution, L"x=1", {1, 2});
    Solve(m_solution, L"x=2", {3});
    Commit();
    TakeTraces();
  }
  static io::CBlock Named(AString const & name, double value) {
    io::CBlock block(name);
    io::CBlock_func data(L"Values");
    data << value;
    block << data;
    return block;
  }
  /// In the order of names.
  static std::vector<std::pair<AString, std::string>> SortedBlocksOf(AString const & path) {
    auto blocks = BlocksOf(path);
    std::sort(blocks.begin(), blocks.end());
    return blocks;
  }

  BaseSimulationSetup & m_setup;
  BaseSolution & m_solution;
};

} // namespace support
