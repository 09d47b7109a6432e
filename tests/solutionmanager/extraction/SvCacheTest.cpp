#include "basekit/text/Utf8.h"
#include "solutionmanager/extraction/DatasetWords.h"
#include "solutionmanager/extraction/SvCacheFile.h"
#include "tests/solutionmanager/extraction/TraceFixture.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>

using support::AssertWatch;

namespace {

using Complex = std::complex<double>;

/// The exchange of all caches is the manager's own affair, but has an answer to be checked: an explicit instantiation
/// may name a private member.
struct ManagerExchange {
  using Type = bool (BaseSolutionManager::*)(bool);
  friend Type Member(ManagerExchange);
};
template <class Tag, typename Tag::Type member> struct NamesMember {
  friend typename Tag::Type Member(Tag) { return member; }
};
template struct NamesMember<ManagerExchange, &BaseSolutionManager::DoDataExchangeSimValueCache>;

class SvCacheTest : public support::TraceTest {
protected:
  SvCacheTest() {
    m_set = CreateSet();
    CSimValueCacheV::Numbers & numbers = m_set->GetSimValueCache().ForEdit(Version(), S11());
    numbers.column.Append(std::vector<Complex>{{1.0 / 3.0, -1e-300},
                                               {std::nan(""), std::nan("")},
                                               {-0.0, std::numeric_limits<double>::infinity()},
                                               {5e-324, 1.7976931348623157e308}});
    numbers.segments.Add(0, L"x=1; y=\"a b\"", 3);
    numbers.segments.Add(1, L"x=2", 0, true);
    numbers.segments.Add(2, L"x=3", 1);
    CSimValueCacheV::Numbers & axis = m_set->GetSimValueCache().AxisForEdit(Version(), L"F");
    axis.column.Append(std::vector<double>{1e9, 2e9, 3e9, 0.1});
    m_numbers = numbers;
    m_axis = axis;
  }

  long Version() const { return m_solution->GetVersionID(); }
  static SimValue S11() { return SimValue(L"S11", SimValueContext()); }
  std::filesystem::path FileOf(long designID) const {
    return m_folder / ("results/Design_" + std::to_string(designID) + ".svcache");
  }
  std::filesystem::path File() const { return FileOf(3); }
  /// As the manager does when it reads or writes all files; there the answer changes nothing.
  bool Exchange(bool reading) { return (Manager().*Member(ManagerExchange()))(reading); }
  /// A module of one setup, with its cache file.
  io::CBlock Module() {
    Solve(*m_solution, L"x=1", {1});
    Commit();
    io::CBlock module(L"Module");
    EXPECT_TRUE(Manager().WriteModule(module, ReadMethod::kAllFiles));
    EXPECT_TRUE(std::filesystem::exists(File()));
    m_manager.reset();
    UseManager();
    return module;
  }
  /// True when a set of any extractor has numbers.
  bool IsAnyKept() {
    std::vector<BaseSimDataExtractor *> extractors;
    Manager().GetAllAssociatedSimDataExtractors(extractors);
    for (BaseSimDataExtractor const * const extractor : extractors)
      for (auto at = extractor->GetFirstSolutionPointSet(); at != extractor->GetLastSolutionPointSet(); ++at)
        if (!(*at)->GetSimValueCache().empty())
          return true;
    return false;
  }
  bool Write() {
    io::CBlock module(L"Module");
    return Manager().WriteModule(module, ReadMethod::kAllFiles);
  }
  /// Through the extractor and the file, as the manager does; the set's cache is empty before.
  bool ReadBack() {
    m_set->GetSimValueCache().Clear();
    io::CBlock caches(svcachefile::kTopBlockName);
    return svcachefile::Read(text::FromUtf8(File().string()), caches) &&
           m_extractor->DoDataExchangeSimValueCache(caches, true) == io::kNoError;
  }
  bool HoldsAll() {
    auto const * const numbers = m_set->GetSimValueCache().Find(Version(), S11());
    auto const * const axis = m_set->GetSimValueCache().FindAxis(Version(), L"f");
    return numbers && axis && numbers->column.IsSame(m_numbers.column) && axis->column.IsSame(m_axis.column) &&
           numbers->segments.Get() == m_numbers.segments.Get();
  }
  std::string Content() const {
    std::ostringstream content;
    content << std::ifstream(File(), std::ios::binary).rdbuf();
    return content.str();
  }
  void SetContent(std::string const & content) const { std::ofstream(File(), std::ios::binary) << content; }
  io::CBlock Exchanged() {
    io::CBlock block(L"Any");
    EXPECT_EQ(m_set->DoDataExchangeSimValueCache(block, false), io::kNoError);
    return block;
  }

  SolutionPointSet * m_set = nullptr;
  CSimValueCacheV::Numbers m_numbers;
  CSimValueCacheV::Numbers m_axis;
};

} // namespace

TEST_F(SvCacheTest, NumbersComeBackBitForBit) {
  ASSERT_TRUE(Write());
  ASSERT_TRUE(ReadBack());
  EXPECT_TRUE(HoldsAll());
}

TEST_F(SvCacheTest, TheFileHoldsOneBlockForEachExtractor) {
  AddSetup(L"Setup2", L"Other");
  ASSERT_TRUE(Write());
  io::CBlock caches(svcachefile::kTopBlockName);
  ASSERT_TRUE(svcachefile::Read(text::FromUtf8(File().string()), caches));
  std::vector<BaseSimDataExtractor *> extractors;
  Manager().GetAllAssociatedSimDataExtractors(extractors);
  std::vector<AString> expected;
  for (BaseSimDataExtractor const * const extractor : extractors)
    expected.push_back(AString::Format(L"SimDE_%d", extractor->GetISolution()->GetID()));
  std::vector<AString> found;
  for (auto const & child : caches)
    found.push_back(child->Name());
  EXPECT_EQ(found, expected);
  EXPECT_EQ(found.size(), 2u);
}

TEST_F(SvCacheTest, TheWordsOfCacheFilesStandInTheirOrder) {
  EXPECT_EQ((std::vector<AString>(std::begin(svcachefile::kVocabulary), std::end(svcachefile::kVocabulary))),
            (std::vector<AString>{L"svcache", L"svc", L"CacheHeaderFile", L"DesignID", L"SimValueCache", L"DesignMap",
                                  L"SolutionMap", L"ContextMap", L"ReportTypeSolnDef", L"ReportType", L"VersionMap",
                                  L"MajorVVMap", L"MinorVVMap", L"MajorVariation", L"SolutionID", L"VersionID",
                                  L"MinorCacheFile"}));
}

TEST_F(SvCacheTest, WordsThatNameDatasetsAreShared) {
  EXPECT_STREQ(datasetwords::kUserDefined, L"User Defined");
  EXPECT_STREQ(datasetwords::kDataset, L"Dataset");
  EXPECT_STREQ(datasetwords::kColumnData, L"columndata");
}

TEST_F(SvCacheTest, ADesignWithoutIDWritesAndReadsNothing) {
  ASSERT_TRUE(Write());
  m_design.designID = id::invalidID;
  std::filesystem::copy_file(File(), FileOf(id::invalidID));
  std::filesystem::remove(File());
  m_set->GetSimValueCache().Clear();
  EXPECT_FALSE(Exchange(true)) << "a file of that name is nobody's";
  EXPECT_TRUE(m_set->GetSimValueCache().empty());
  std::filesystem::remove(FileOf(id::invalidID));
  EXPECT_TRUE(Write());
  EXPECT_FALSE(Exchange(false));
  for (auto const & entry : std::filesystem::recursive_directory_iterator(m_folder / "results"))
    EXPECT_NE(entry.path().extension(), ".svcache") << entry.path();
}

TEST_F(SvCacheTest, WithoutAFileThereIsNothing) {
  EXPECT_FALSE(ReadBack());
  EXPECT_TRUE(m_set->GetSimValueCache().empty());
}

TEST_F(SvCacheTest, ReadingAModuleBringsTheNumbersBack) {
  Solve(*m_solution, L"x=1", {1});
  Commit();
  long const solutionID = m_solution->GetID();
  long const setID = m_set->GetID();
  long const version = Version();
  io::CBlock module(L"Module");
  ASSERT_TRUE(Manager().WriteModule(module, ReadMethod::kAllFiles));
  m_manager.reset();
  UseManager();
  EXPECT_EQ(Manager().ReadModule(module, false, ReadMethod::kAllFiles), io::kNoError);
  ISolution * const solution = Manager().GetISolutionByID(solutionID, false, false);
  ASSERT_NE(solution, nullptr);
  auto const * const extractor = dynamic_cast<BaseSimDataExtractor const *>(solution->GetISimDataExtractor());
  ASSERT_NE(extractor, nullptr);
  ASSERT_EQ(extractor->GetSolutionPointSetsSize(), 1u);
  SolutionPointSet * const set = *extractor->GetFirstSolutionPointSet();
  EXPECT_EQ(set->GetID(), setID);
  auto const * const numbers = set->GetSimValueCache().Find(version, S11());
  ASSERT_NE(numbers, nullptr);
  EXPECT_TRUE(numbers->column.IsSame(m_numbers.column));
}

TEST_F(SvCacheTest, ACacheToBeDiscardedIsGoneBeforeAnyRead) {
  ASSERT_TRUE(Write());
  ASSERT_TRUE(std::filesystem::exists(File()));
  Manager().ReadModule(io::CBlock(L"Module"), true, ReadMethod::kDefinitionOnly);
  AssertWatch::Take(); // the product has no definition file
  EXPECT_FALSE(std::filesystem::exists(File())) << "a cache of another state must not be read";
}

TEST_F(SvCacheTest, ACacheToBeDiscardedIsNotReadWithAllFilesEither) {
  io::CBlock const module = Module();
  EXPECT_EQ(Manager().ReadModule(module, true, ReadMethod::kAllFiles), io::kNoError);
  EXPECT_FALSE(std::filesystem::exists(File()));
  EXPECT_FALSE(IsAnyKept());
}

TEST_F(SvCacheTest, ACacheThatCannotBeReadChangesNothingOfTheAnswer) {
  io::CBlock const module = Module();
  SetContent("neither a stream of tokens nor anything else");
  EXPECT_EQ(Manager().ReadModule(module, false, ReadMethod::kAllFiles), io::kNoError);
  EXPECT_FALSE(IsAnyKept());
  std::filesystem::remove(File());
  m_manager.reset();
  UseManager();
  EXPECT_EQ(Manager().ReadModule(module, false, ReadMethod::kAllFiles), io::kNoError);
  EXPECT_FALSE(IsAnyKept());
}

TEST_F(SvCacheTest, WritingTheDefinitionAloneWritesNoCache) {
  io::CBlock module(L"Module");
  Manager().WriteModule(module, ReadMethod::kDefinitionOnly);
  AssertWatch::Take(); // the product has no definition file
  EXPECT_FALSE(std::filesystem::exists(File()));
}

TEST_F(SvCacheTest, TheExchangeTellsWhetherAllWentWell) {
  EXPECT_FALSE(Exchange(true)) << "no file";
  EXPECT_TRUE(Exchange(false));
  m_set->GetSimValueCache().Clear();
  EXPECT_TRUE(Exchange(true));
  EXPECT_TRUE(HoldsAll());
  m_set->GetSimValueCache().Clear();
  AddSetup(L"Setup2", L"Other");
  EXPECT_FALSE(Exchange(true)) << "a solution that the file lacks";
  EXPECT_TRUE(HoldsAll()) << "the others are filled";
  m_desktop.rewrite = true;
  EXPECT_TRUE(Exchange(true));
}

TEST_F(SvCacheTest, ASolutionThatTheFileLacksMakesTheReadFalseAndTheOthersAreFilled) {
  ASSERT_TRUE(Write());
  BaseSolution & other = SolutionOf(AddSetup(L"Setup2", L"Other"));
  io::CBlock caches(svcachefile::kTopBlockName);
  ASSERT_TRUE(svcachefile::Read(text::FromUtf8(File().string()), caches));
  auto * const ofOther = dynamic_cast<BaseSimDataExtractor *>(other.GetISimDataExtractor());
  ASSERT_NE(ofOther, nullptr);
  EXPECT_EQ(ofOther->DoDataExchangeSimValueCache(caches, true), io::kNotFound);
  m_set->GetSimValueCache().Clear();
  EXPECT_EQ(m_extractor->DoDataExchangeSimValueCache(caches, true), io::kNoError);
  EXPECT_TRUE(HoldsAll());
}

TEST_F(SvCacheTest, UnderTheReporterRewriteNoFileIsTouched) {
  m_desktop.rewrite = true;
  EXPECT_TRUE(Write());
  EXPECT_FALSE(std::filesystem::exists(File()));
  io::CBlock block(L"Any");
  EXPECT_EQ(m_extractor->DoDataExchangeSimValueCache(block, false), io::kNoError);
  EXPECT_TRUE(block.Empty());
  EXPECT_EQ(AssertWatch::Take(),
            std::vector<std::string>{"!\"Should just not be calling this. Done differently in reporter rewrite\""});
}

TEST_F(SvCacheTest, AFileThatCannotBeWrittenIsAnAssertionAndSavingGoesOn) {
  std::filesystem::create_directory(File());
  AssertWatch::Expect("!\"Could not write solution manager simvalue cache file\"");
  EXPECT_TRUE(Write());
}

TEST_F(SvCacheTest, NumbersOfAStaleVersionAreNotTaken) {
  ASSERT_TRUE(Write());
  m_set->SetSolutionVersionID(Version() + 1);
  EXPECT_FALSE(ReadBack());
  EXPECT_TRUE(m_set->GetSimValueCache().empty());
}

TEST_F(SvCacheTest, OfSeveralVersionsTheSetsOwnIsTaken) {
  m_set->GetSimValueCache().ForEdit(Version() + 7, S11()).column.Append(9.0);
  ASSERT_TRUE(Write());
  EXPECT_TRUE(ReadBack());
  EXPECT_TRUE(HoldsAll());
  EXPECT_EQ(m_set->GetSimValueCache().Find(Version() + 7, S11()), nullptr);
}

TEST_F(SvCacheTest, AFileOfAForeignDesignGivesNothing) {
  ASSERT_TRUE(Write());
  m_design.name = L"Another";
  EXPECT_FALSE(ReadBack());
  EXPECT_TRUE(m_set->GetSimValueCache().empty());
}

TEST_F(SvCacheTest, ContextsAreToldApart) {
  SimValue const other(L"S11", SimValueContext(9, rep::CalculationType{}, 2, 0, 1, 1, 0, 0));
  m_set->GetSimValueCache().ForEdit(Version(), other).column.Append(9.0);
  ASSERT_TRUE(Write());
  ASSERT_TRUE(ReadBack());
  EXPECT_TRUE(HoldsAll());
  ASSERT_NE(m_set->GetSimValueCache().Find(Version(), other), nullptr);
  EXPECT_EQ(m_set->GetSimValueCache().Find(Version(), other)->column.GetNumber(0), 9.0);
}

TEST_F(SvCacheTest, ASetWithoutNumbersIsNoError) {
  m_set->GetSimValueCache().Clear();
  ASSERT_TRUE(Write());
  EXPECT_TRUE(ReadBack());
  EXPECT_TRUE(m_set->GetSimValueCache().empty());
}

TEST_F(SvCacheTest, ASetThatTheFileLacksIsToldAndTheOthersAreFilled) {
  ASSERT_TRUE(Write());
  SolutionPointSet * const another = CreateSet(false);
  EXPECT_FALSE(ReadBack());
  EXPECT_TRUE(HoldsAll());
  EXPECT_TRUE(another->GetSimValueCache().empty());
}

TEST_F(SvCacheTest, WhatWasThereStaysWhenTheBlockIsDamaged) {
  io::CBlock const block = Exchanged();
  std::wstring text = block.Pack().c_str();
  std::size_t const place = text.find(L"1e+09") != std::wstring::npos ? text.find(L"1e+09") : text.find(L"1e9");
  ASSERT_NE(place, std::wstring::npos);
  text[place] = L'2';
  io::CBlock damaged(L"Any");
  ASSERT_TRUE(damaged.Unpack(AString(text)));
  EXPECT_EQ(m_set->DoDataExchangeSimValueCache(damaged, true), io::kBadContent);
  EXPECT_TRUE(HoldsAll());
}

TEST_F(SvCacheTest, AFileThatWasCutGivesNothing) {
  ASSERT_TRUE(Write());
  std::string const whole = Content();
  for (std::size_t length = 0; length + 2 < whole.size(); length += 1 + whole.size() / 97) {
    SetContent(whole.substr(0, length));
    EXPECT_FALSE(ReadBack()) << length;
    EXPECT_TRUE(m_set->GetSimValueCache().empty()) << length;
  }
}

TEST_F(SvCacheTest, AFlippedBitNeverChangesANumber) {
  ASSERT_TRUE(Write());
  std::string const whole = Content();
  for (std::size_t place = 0; place < whole.size(); place += 3) {
    std::string flipped = whole;
    flipped[place] = static_cast<char>(flipped[place] ^ (1 << (place % 8)));
    SetContent(flipped);
    ReadBack();
    auto const * const numbers = m_set->GetSimValueCache().Find(Version(), S11());
    auto const * const axis = m_set->GetSimValueCache().FindAxis(Version(), L"F");
    EXPECT_TRUE(!numbers ||
                (numbers->column.IsSame(m_numbers.column) && numbers->segments.Get() == m_numbers.segments.Get()))
        << place;
    EXPECT_TRUE(!axis || axis->column.IsSame(m_axis.column)) << place;
  }
}

TEST_F(SvCacheTest, HostileBlocksGiveNothing) {
  AString const origin =
      L"Design = \"Design\" DesignID = 3 Solution = " + AString::Format(L"%ld", m_solution->GetID()) + L" ";
  m_set->GetSimValueCache().Clear();
  for (wchar_t const * const content :
       {L"SimValue { }", L"SimValue { Version = 1 Text = 7 }", L"SimValue { Version = \"1\" Text = \"a\" }",
        L"Axis { Version = 1 Text = \"F\" Complex = true Numbers(1, 2, 3) Checksum = 0 }",
        L"Axis { Version = 1 Text = \"F\" Complex = false Numbers(1, \"a\") Checksum = 0 }",
        L"Axis { Version = 1 Text = \"F\" Complex = false Numbers(1) Checksum = 0 }",
        L"Axis { Version = 1 Text = \"F\" Points(0) Counts(9000000000000000000) Variations [\"x\"] Missing() "
        L"Complex = false Numbers(1) Checksum = 0 }",
        L"Axis { Version = 1 Text = \"F\" Points(0, 1) Counts(1, 1) Variations [\"x\", \"y\"] Missing() "
        L"Complex = false Numbers(1) Checksum = 0 }",
        L"Axis { Version = 1 Text = \"F\" Points(-1) Counts(1) Variations [\"x\"] Missing() Complex = false Numbers(1) "
        L"Checksum = 0 }",
        L"Axis { Version = 1 Text = \"F\" Points(0) Counts(1) Variations [\"x\"] Missing(7) Complex = false Numbers(1) "
        L"Checksum = 0 }",
        L"Axis { Version = 1 Text = \"F\" Points(0) Counts(1) Variations [3] Missing() Complex = false Numbers(1) "
        L"Checksum = 0 }",
        L"Axis { Version = 1 Text = \"F\" Points(0, \"a\") Counts(1) Variations [\"x\"] Missing() Complex = false "
        L"Numbers(1) Checksum = 0 }"}) {
    io::CBlock block(L"Any");
    AString const text = AString::Format(L"Any { SolutionPointSet_%ld { %s%s } }", m_set->GetID(), origin, content);
    if (!block.Unpack(text))
      ADD_FAILURE() << "not a block: " << text::ToUtf8(AString(content));
    EXPECT_EQ(m_set->DoDataExchangeSimValueCache(block, true), io::kBadContent) << text::ToUtf8(AString(content));
    EXPECT_TRUE(m_set->GetSimValueCache().empty());
  }
}

TEST_F(SvCacheTest, ASimValueThatIsCollectedLeavesAllCaches) {
  SolutionPointSet * const set = CreateSet();
  Trace * const trace = AddTrace(set, L"x", L"T");
  delete m_extractor->CreateTraceComponent(L"S11", nullptr);
  Keep(*set, L"S11");
  Keep(*set, L"T");
  m_extractor->DoGarbageCollection({trace});
  EXPECT_FALSE(Keeps(*set, L"S11"));
  EXPECT_TRUE(Keeps(*set, L"T"));
}

TEST_F(SvCacheTest, AHundredThousandVariationsComeBack) {
  constexpr std::size_t kCount = 100'000;
  CSimValueCacheV::Numbers & numbers = m_set->GetSimValueCache().ForEdit(Version(), SimValue(L"T", SimValueContext()));
  for (std::size_t point = 0; point < kCount; ++point) {
    numbers.column.Append(static_cast<double>(point) / 3.0);
    numbers.segments.Add(point, AString::Format(L"x=%lu", point), 1);
  }
  CSimValueCacheV::Numbers const expected = numbers;
  ASSERT_TRUE(Write());
  ASSERT_TRUE(ReadBack());
  auto const * const found = m_set->GetSimValueCache().Find(Version(), SimValue(L"T", SimValueContext()));
  ASSERT_NE(found, nullptr);
  EXPECT_TRUE(found->column.IsSame(expected.column));
  EXPECT_TRUE(found->segments.Get() == expected.segments.Get());
}
