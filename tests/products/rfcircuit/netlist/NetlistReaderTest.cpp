#include "tests/products/rfcircuit/RfSupport.h"

#include <cmath>

namespace {

using namespace rftest;

std::vector<double> Resistances(std::string const & lines, rf::Overrides const & overrides = {}) {
  std::vector<double> values;
  rf::Circuit const circuit = Build(lines, overrides);
  for (rf::Element const & element : circuit.Elements()) {
    if (element.kind == rf::Element::Kind::Resistor)
      values.push_back(element.value);
  }
  return values;
}

using Values = std::vector<double>;

TEST(NetlistReader, TheFirstLineIsTheTitle) {
  auto const netlist = rf::ReadNetlistText("R1 is my title\nR1 a 0 5\n", "x.cir");
  EXPECT_EQ(netlist.Title(), "R1 is my title");
  EXPECT_EQ(rf::Elaborate(netlist).Elements().size(), 1u);
}

TEST(NetlistReader, CommentsBlankLinesAndContinuations) {
  EXPECT_EQ(Resistances("* a comment\n"
                        "R1 a 0\n"
                        "* between\n"
                        "\n"
                        "+ 5 ; behind\n"
                        "R2 a 0 {2 *\n"
                        "+   3} $ behind\n"
                        "$ whole line\n"
                        "; whole line\n"),
            (Values{5, 6}));
}

TEST(NetlistReader, AnyLineEndWillDo) { EXPECT_EQ(Resistances("R1 a 0 5\r\nR2 a 0 6\rR3 a 0 7\n"), (Values{5, 6, 7})); }

TEST(NetlistReader, CaseDoesNotMatter) {
  EXPECT_EQ(Resistances(".PARAM Rv=7\nr1 A 0 {RV}\nR2 a GND 1K\n.END\n"), (Values{7, 1000}));
  EXPECT_EQ(Build("r1 A 0 1\nR2 a GND 1\n").NodeNames(), (std::vector<std::string>{"0", "A"}));
}

TEST(NetlistReader, NothingBehindEndCounts) {
  EXPECT_EQ(Resistances("R1 a 0 5\n.end\nthis is not a netlist\n"), (Values{5}));
}

TEST(NetlistReader, ScriptsAndOtherAnalysesArePassedOver) {
  EXPECT_EQ(Resistances(".options reltol=1e-6\n.ac dec 10 1 1k\n.control\nrun\nplot v(a)\n.endc\nR1 a 0 5\n"),
            (Values{5}));
}

std::vector<std::string> NotesOf(std::string const & text) {
  std::vector<std::string> lines;
  auto const netlist = rf::ReadNetlistText(text, "x.cir");
  for (rf::NetlistNote const & note : netlist.Notes())
    lines.push_back(note.Text());
  return lines;
}

using Notes = std::vector<std::string>;

TEST(NetlistReader, CommandsThatAreIgnoredAreNotedOnceForEachKind) {
  EXPECT_EQ(NotesOf("t\n.temp 27\nR1 a 0 5\n.AC dec 10 1 1k\n.temp 30\n.tran 1n 1u\n.control\nrun\n.temp\n.endc\n"),
            (Notes{"x.cir:2: .temp: ignored", "x.cir:4: .ac: ignored",
                   "x.cir:6: .tran: ignored; .sp sweeps alone are solved", "x.cir:7: .control: ignored up to .endc"}));
  EXPECT_EQ(NotesOf("t\n.param a=1\nR1 a 0 {a}\n.sp lin 2 1 2\n.global b\n.end\n"), Notes{});
}

TEST(NetlistReader, ATitleThatIsAnElementWithNumbersIsNoted) {
  std::string const note = "x.cir:1: line 1 is the title and is not read, though it looks like a statement; put a "
                           "title line in front of it";
  for (char const * title : {"C1 in 0 10p", "  l2 a b 1n ; series", "V1 in 0 dc 0 ac 1 portnum 1 z0 50", "R1 a 0 {2*r}",
                             "T1 a 0 b 0 z0=50 td=1n"})
    EXPECT_EQ(NotesOf(std::string(title) + "\nR1 a 0 5\n"), Notes{note}) << title;
}

TEST(NetlistReader, ATitleOfWordsIsNotNoted) {
  for (char const * title :
       {"", "R1 is my title", "Low-pass filter: 7th-order Chebyshev, 0.1 dB ripple", "* C1 in 0 10p", "; R1 a 0 5",
        "+ 5", "...", ".5 dB filter", ".title a filter", "X1 a b part", "\"quoted"})
    EXPECT_EQ(NotesOf(std::string(title) + "\nR1 a 0 5\n"), Notes{}) << title;
}

TEST(NetlistReader, ParametersInAnyOrderAndForm) {
  EXPECT_EQ(Resistances("R1 a 0 {c}\nR2 a 0 'a+1'\nR3 a 0 b\nR4 a 0 R={a}\nR5 a 0 r = a * 3\nR6 a 0 \"a*5\"\n"
                        ".param a=2 b = {a*2} c='a + b' d=a + b e=1\nR7 a 0 {d}\n"),
            (Values{6, 3, 4, 2, 6, 10, 6}));
}

TEST(NetlistReader, ParametersOfSubcircuitsHaveDefaultsAndOverrides) {
  EXPECT_EQ(Resistances(".param g=100\n"
                        ".subckt one a b params: r=5 s={r*2}\nR1 a b {r}\nR2 a b {s+t}\n.param t={g}\n.ends one\n"
                        "X1 in 0 one\nX2 in 0 one r=7\nX3 in 0 one params: r={g/2} s=1\n"),
            (Values{5, 110, 7, 114, 50, 101}));
}

TEST(NetlistReader, SubcircuitsNestInDefinitionAndUse) {
  EXPECT_EQ(Resistances(".subckt outer a b r=1\n"
                        ".subckt inner a b r=2\nR1 a m {r}\nR2 m b {r}\n.ends\n"
                        "X1 a b inner r={r*10}\nX2 a b inner\n.ends outer\n"
                        "X9 in 0 outer r=3\n"),
            (Values{30, 30, 2, 2}));
  auto const circuit = Build(".subckt s a\nR1 a m 1\nR2 m 0 1\n.ends\nX1 in s\nX2 in s\n");
  EXPECT_EQ(circuit.NodeNames(), (std::vector<std::string>{"0", "in", "X1.m", "X2.m"}));
  EXPECT_EQ(circuit.Elements()[3].name, "X2.R2");
}

TEST(NetlistReader, ASubcircuitSeesTheParametersOfItsCallerFirstAsSpiceDoes) {
  EXPECT_EQ(Resistances(".param p=1\n.subckt inner a b\nR1 a b {p}\n.ends\n"
                        ".subckt outer a b\n.param p=2\nX1 a b inner\n.ends\nX1 in 0 outer\nX2 in 0 inner\n"),
            (Values{2, 1}));
}

TEST(NetlistReader, GlobalNodesAreTheSameEverywhere) {
  auto const circuit = Build(".global vref\n.subckt s a\nR1 a vref 1\n.ends\nX1 in s\nR2 vref 0 1\n");
  EXPECT_EQ(circuit.NodeNames(), (std::vector<std::string>{"0", "in", "vref"}));
}

TEST(NetlistReader, ATopNodeWithAPathLikeNameIsNotTheInnerNode) {
  EXPECT_EQ(Build(".subckt s a\nR1 a m 1\nR2 m 0 1\n.ends\nX1 in s\nR3 in x1.m 1\nR4 x1.m 0 1\n").NodeNames().size(),
            4u);
}

TEST(NetlistReader, PortsAndOtherSources) {
  auto const circuit = Build("V2 b 0 portnum 2 z0 75\nV1 a 0 dc 0 ac 1 portnum 1 z0 {2*25}\nR1 a b 1\n"
                             "V3 c 0 5\nR2 c 0 1\nV4 d 0 sin(0 1 1k) ac 1 90\nR3 d 0 1\nI1 a 0 dc 1m pulse(0 1 1n 1n)\n"
                             "V5 e 0 dc=1 ac=2 portnum=3\nR5 e 0 1\n");
  ASSERT_EQ(circuit.Ports().size(), 3u);
  EXPECT_EQ(circuit.Ports()[0].name, "V1");
  EXPECT_EQ(circuit.Ports()[0].z0, 50);
  EXPECT_EQ(circuit.Ports()[1].number, 2);
  EXPECT_EQ(circuit.Ports()[1].z0, 75);
  EXPECT_EQ(circuit.Ports()[2].z0, 50);
}

TEST(NetlistReader, DesignVariablesArePlainTopLevelParametersOfTheMainFile) {
  FolderOfFiles const folder;
  folder.Write("lib.inc", ".param fromlib=3\n");
  auto const path = folder.Write("main.cir", "t\n.param Width=4.7p neg=-2 expr={neg*2}\n.include lib.inc\n"
                                             ".subckt s a\n.param inner=1\nR1 a 0 {inner}\n.ends\n.param gap={1}\n");
  auto const variables = rf::ReadNetlist(path).DesignVariables();
  ASSERT_EQ(variables.size(), 3u);
  EXPECT_EQ(variables[0].name, "Width");
  EXPECT_EQ(variables[0].value, 4.7e-12);
  EXPECT_EQ(variables[0].text, "4.7p");
  EXPECT_EQ(variables[0].where.line, 2);
  EXPECT_EQ(variables[0].where.FileName(), path.string());
  EXPECT_EQ(variables[1].value, -2);
  EXPECT_EQ(variables[2].name, "gap");
}

TEST(NetlistReader, OverridesReplaceDesignVariablesWithoutCase) {
  EXPECT_EQ(Resistances(".param Rv=7 d={rv*2}\nR1 a 0 {rv}\nR2 a 0 {d}\n", {{"RV", 10}}), (Values{10, 20}));
}

TEST(NetlistReader, UnknownOverridesNameTheKnownVariables) {
  auto const netlist = Read(".param a=1 b=2 c={a}\nR1 x 0 {c}\n");
  EXPECT_EQ(ErrorOf([&] {
              rf::Elaborate(netlist, {{"c", 1}});
            }),
            "test.cir: design variable 'c': it is not known; the netlist has: a, b");
  EXPECT_EQ(ErrorOf([&] {
              rf::Elaborate(netlist, {{"a", NAN}});
            }),
            "test.cir: design variable 'a': its value is not a finite number; give a number");
  auto const without = Read("R1 x 0 1\n");
  EXPECT_EQ(ErrorOf([&] {
              rf::Elaborate(without, {{"c", 1}});
            }),
            "test.cir: design variable 'c': it is not known; the netlist has none");
}

TEST(NetlistReader, IncludesAreRelativeToTheIncludingFile) {
  FolderOfFiles const folder;
  folder.Write("parts/more/deep.inc", "R3 a 0 3\n");
  folder.Write("parts/first.inc", "R2 a 0 2\n.include 'more/deep.inc'\n.end\nR9 a 0 9\n");
  auto const path = folder.Write("main.cir", "t\nR1 a 0 1\n.INCLUDE \"parts/first.inc\"\nR4 a 0 4\n");
  auto const netlist = rf::ReadNetlist(path);
  EXPECT_EQ(rf::Elaborate(netlist).Elements().size(), 4u);
  EXPECT_EQ(netlist.Files().size(), 3u);
  EXPECT_EQ(rf::Elaborate(netlist).Elements()[2].where.FileName(), (folder.Path() / "parts/more/deep.inc").string());
}

TEST(NetlistReader, SweepsEvaluateTheirNumbersAndTransientLinesStayText) {
  auto const netlist = Read(".param n=11 fmax=1g\n.sp lin {n} 1meg {fmax}\n.sp dec 10 1k 1meg 0\n.sp oct 2 1k 8k\n"
                            ".sp list 3k 1k 2k\n.tran 1n 100n uic\nR1 a 0 1\n");
  auto const sweeps = netlist.Sweeps({{"fmax", 2e9}});
  ASSERT_EQ(sweeps.size(), 4u);
  EXPECT_EQ(sweeps[0].name, "SP1");
  EXPECT_EQ(sweeps[0].where.line, 3);
  EXPECT_EQ(sweeps[0].text, ".sp lin {n} 1meg {fmax}");
  EXPECT_EQ(sweeps[0].sweep.KindName(), "lin");
  EXPECT_EQ(sweeps[0].sweep.GivenPoints(), 11u);
  EXPECT_EQ(sweeps[0].sweep.Stop(), 2e9);
  EXPECT_EQ(sweeps[3].sweep.Frequencies(), (Values{1e3, 2e3, 3e3}));
  ASSERT_EQ(netlist.Transients().size(), 1u);
  EXPECT_EQ(netlist.Transients()[0].text, ".tran 1n 100n uic");
}

TEST(NetlistReader, ASweepMayAskForFiles) {
  auto const sweeps = Read(".param f0=2g\n.sp lin 11 1meg 2meg\n.sp lin 11 1meg 2meg touchstone\n"
                           ".sp list 1k 2k adaptive passes=3 Touchstone Z0=75 voltages=2k,1k 1k\n"
                           ".sp dec 10 1k 1meg direct voltages={f0}\n.sp list 1k 2k voltages=0 touchstone\n")
                          .Sweeps();
  ASSERT_EQ(sweeps.size(), 5u);
  EXPECT_TRUE(sweeps[0].files.IsEmpty());
  EXPECT_TRUE(sweeps[1].files.touchstone);
  EXPECT_FALSE(sweeps[1].files.z0);
  EXPECT_EQ(sweeps[2].sweep.Frequencies(), (std::vector<double>{1e3, 2e3}));
  EXPECT_EQ(sweeps[2].method.passes, 3);
  EXPECT_EQ(sweeps[2].files.z0, 75.0);
  EXPECT_EQ(sweeps[2].files.voltages, (std::vector<double>{1e3, 2e3}));
  EXPECT_EQ(sweeps[3].files.voltages, (std::vector<double>{2e9}));
  EXPECT_EQ(sweeps[4].files.voltages, (std::vector<double>{0}));
  EXPECT_TRUE(sweeps[4].files.touchstone);
}

TEST(NetlistReader, ASweepIsDirectUnlessItSaysAdaptive) {
  auto const sweeps = Read(".param accuracy=1e-7\n.sp lin 11 1meg 2meg\n.sp lin 11 1meg 2meg 0 direct\n"
                           ".sp dec 10 1k 1meg adaptive\n.sp list 1k 2k Adaptive target={accuracy} passes=3 most=50\n"
                           "R1 a 0 1\n")
                          .Sweeps();
  ASSERT_EQ(sweeps.size(), 4u);
  EXPECT_EQ(sweeps[0].method, rf::SweepMethod::Direct());
  EXPECT_EQ(sweeps[1].method, rf::SweepMethod::Direct());
  EXPECT_EQ(sweeps[2].method, rf::SweepMethod::Adaptive());
  EXPECT_TRUE(sweeps[3].method.isAdaptive);
  EXPECT_EQ(sweeps[3].method.target, 1e-7);
  EXPECT_EQ(sweeps[3].method.passes, 3);
  EXPECT_EQ(sweeps[3].method.mostPoints, 50u);
}

TEST(NetlistReader, AByteOrderMarkIsNotPartOfTheTitle) {
  FolderOfFiles const folder;
  EXPECT_EQ(rf::ReadNetlist(folder.Write("a.cir", "\xEF\xBB\xBFhello\nR1 a 0 1\n")).Title(), "hello");
}

} // namespace
