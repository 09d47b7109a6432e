#include "tests/products/rfcircuit/RfSupport.h"

namespace {

using namespace rftest;

TEST(BadNetlist, MissingFile) {
  EXPECT_EQ(ErrorOf([] { rf::ReadNetlist("nowhere/at/all.cir"); }),
            "nowhere/at/all.cir: netlist: there is no such file; check the path");
}

TEST(BadNetlist, AFolderIsNotANetlist) {
  FolderOfFiles const folder;
  EXPECT_EQ(ErrorOf([&] { rf::ReadNetlist(folder.Path()); }),
            folder.Path().string() + ": netlist: is not a file; name a netlist file");
}

TEST(BadNetlist, UnreadableFile) {
  FolderOfFiles const folder;
  auto const path = folder.Write("locked.cir", "t\nR1 a 0 1\n");
  std::filesystem::permissions(path, std::filesystem::perms::none);
  WithoutPrivileges const asNobody;
  EXPECT_EQ(ErrorOf([&] { rf::ReadNetlist(path); }),
            path.string() + ": netlist: can't be read: Permission denied; check its permissions");
}

TEST(BadNetlist, TooLargeFileIsNotEvenRead) {
  FolderOfFiles const folder;
  auto const path = folder.Write("large.cir", "t\n");
  std::filesystem::resize_file(path, std::uintmax_t(1) << 40);
  EXPECT_NE(ErrorOf([&] { rf::ReadNetlist(path); }).find("is too large: 1099511627776 bytes"), std::string::npos);
}

TEST(BadNetlist, BinaryFile) {
  FolderOfFiles const folder;
  auto const path = folder.Write("binary.cir", std::string("\x7f"
                                                           "ELF\0\1\2",
                                                           7));
  EXPECT_EQ(ErrorOf([&] { rf::ReadNetlist(path); }),
            path.string() + ": netlist: is not text but a binary file; give a netlist in plain text");
}

TEST(BadNetlist, IncludeOfAMissingFileNamesTheIncludingLine) {
  FolderOfFiles const folder;
  auto const path = folder.Write("main.cir", "t\n\n.include none.inc\n");
  EXPECT_EQ(ErrorOf([&] { rf::ReadNetlist(path); }), path.string() + ":3: .include '" +
                                                         (folder.Path() / "none.inc").string() +
                                                         "': there is no such file; check the path");
}

TEST(BadNetlist, IncludeCircleIsToldWithItsPath) {
  FolderOfFiles const folder;
  folder.Write("a.inc", ".include sub/../b.inc\n");
  folder.Write("sub/x", "");
  auto const second = folder.Write("b.inc", "R1 a 0 1\n.include a.inc\n");
  auto const path = folder.Write("main.cir", "t\n.include a.inc\n");
  EXPECT_EQ(ErrorOf([&] { rf::ReadNetlist(path); }),
            second.string() +
                ":2: .include 'a.inc': the file includes itself: a.inc -> b.inc -> a.inc; break the circle");
}

TEST(BadNetlist, IncludesThatMultiplyAreRefused) {
  FolderOfFiles const folder;
  for (int level = 0; level < 20; ++level) {
    std::string const next = ".include l" + Text(level + 1) + ".inc\n";
    folder.Write("l" + Text(level) + ".inc", next + next + next);
  }
  folder.Write("l20.inc", "* nothing\n");
  auto const path = folder.Write("main.cir", "t\n.include l0.inc\n");
  EXPECT_NE(ErrorOf([&] { rf::ReadNetlist(path); }).find("too many files are included"), std::string::npos);
}

TEST(BadNetlist, IncludeWithoutAName) {
  EXPECT_EQ(ErrorOfReading(".include\n"),
            "test.cir:2: .include: the file's name is missing; write '.include \"FILE\"'");
}

TEST(BadNetlist, ContinuationOfNothing) {
  EXPECT_EQ(ErrorOfReading("+ 5\n"),
            "test.cir:2: +: there is no line before that could be continued; remove the '+' or "
            "put the line behind the one it belongs to");
}

TEST(BadNetlist, UnknownElement) {
  EXPECT_EQ(
      ErrorOfReading("R1 a 0 1\nQ1 c b e model\n"),
      "test.cir:3: Q1: unknown element; elements begin with R, L, C, K, T, E, F, G, H, V, I, X or N; lines of commands "
      "with a point");
}

TEST(BadNetlist, UnknownCommand) {
  EXPECT_EQ(ErrorOfReading(".model d d\n"), "test.cir:2: .model: unknown command; known are .param, .subckt, .ends, "
                                            ".include, .sp, .global and .end");
}

TEST(BadNetlist, ACommandInTheTitleLine) {
  EXPECT_EQ(ErrorOf([] { rf::ReadNetlistText(".PARAM r=5\nR1 a 0 {r}\n", "x.cir"); }),
            "x.cir:1: .param: line 1 is the title and is not read, though it looks like a statement; put a title line "
            "in front of it");
}

TEST(BadNetlist, AScriptThatIsNotClosed) {
  EXPECT_EQ(ErrorOfReading("R1 a 0 1\n.control\nrun\n.end\n"),
            "test.cir:3: .control: the script is not closed; end it with .endc");
  EXPECT_EQ(ErrorOfReading(".control\n"), "test.cir:2: .control: the script is not closed; end it with .endc");
}

TEST(BadNetlist, TooFewNodes) {
  EXPECT_EQ(ErrorOfReading("R1 a\n"), "test.cir:2: R1: it has 1 nodes, 2 are needed; write 'RNAME NODE NODE VALUE'");
  EXPECT_EQ(ErrorOfReading("E1 a 0 b\n"), "test.cir:2: E1: it has 3 nodes, 4 are needed; write 'ENAME OUT+ OUT- IN+ "
                                          "IN- GAIN'");
  EXPECT_EQ(ErrorOfReading("T1 a 0 b z0=50 td=1n\n"),
            "test.cir:2: T1: it has 3 nodes, 4 are needed; write 'TNAME NODE NODE NODE NODE Z0=... TD=...'");
}

TEST(BadNetlist, TooManyNodes) {
  EXPECT_EQ(ErrorOfReading("C1 a 0 1p 2p\n"),
            "test.cir:2: C1: '2p' stands behind the value; a capacitor has two nodes and "
            "one value: 'CNAME NODE NODE VALUE'; put expressions in braces");
  EXPECT_NE(ErrorOfReading("T1 a 0 b 0 c z0=50 td=1n\n").find("'c' stands behind its four nodes"), std::string::npos);
  EXPECT_NE(ErrorOfReading("G1 a 0 b 0 1m 2m\n").find("'2m' stands behind the gain"), std::string::npos);
}

TEST(BadNetlist, MissingValue) {
  EXPECT_EQ(ErrorOfReading("L1 a 0\n"), "test.cir:2: L1: its value is missing; write 'LNAME NODE NODE VALUE'");
  EXPECT_NE(ErrorOfReading("C1 a 0 ic=1\n").find("its value is missing before 'ic='"), std::string::npos);
}

TEST(BadNetlist, BadNumberIsToldWithTheLineOfItsContinuation) {
  EXPECT_EQ(ErrorOfReading("R1 a 0\n+ 1.2.3\n"),
            "test.cir:3: R1: '1.2.3' is not a number; write a number such as 50, 1e-12 or 4.7p");
}

TEST(BadNetlist, UnknownValueOfAnElement) {
  EXPECT_EQ(ErrorOfReading("R1 a 0 5 tc=1\n"), "test.cir:2: R1: it knows no 'tc='; remove it or check its spelling");
}

TEST(BadNetlist, DuplicateElementNames) {
  EXPECT_EQ(ErrorOfReading("R1 a 0 5\nr1 a 0 5\n"),
            "test.cir:3: r1: the name stands twice, first in line 2 of test.cir; "
            "give each element its own name");
}

TEST(BadNetlist, PolynomialSources) {
  EXPECT_NE(ErrorOfReading("E1 a 0 poly(1) b 0 0 1\n").find("only linear sources"), std::string::npos);
}

TEST(BadNetlist, PartsOfASourceThatMakeNoSense) {
  EXPECT_NE(ErrorOfReading("V1 a 0 dc 1 hello\n").find("'hello' is not a part of a source"), std::string::npos);
  EXPECT_NE(ErrorOfReading("V1 a 0 portnum 1 portnum 2\n").find("'portnum' is given twice"), std::string::npos);
}

TEST(BadNetlist, UndefinedParameter) {
  EXPECT_EQ(
      ErrorOfBuilding(".param a={b*2}\nR1 x 0 {a}\n"),
      "test.cir:2: parameter 'a': parameter 'b' is not defined; define it with '.param b=...' or check its spelling");
}

TEST(BadNetlist, ParameterOfAnotherSubcircuitIsUndefined) {
  EXPECT_NE(ErrorOfBuilding(".subckt s a r=1\nR1 a 0 {r}\n.ends\nX1 a s\nR2 a 0 {r}\n")
                .find("test.cir:6: R2: parameter 'r' is not defined"),
            std::string::npos);
}

TEST(BadNetlist, ParameterDefinedTwice) {
  EXPECT_EQ(ErrorOfReading(".param a=1\n.param A=2\n"),
            "test.cir:3: .param: parameter 'A' is defined twice, first in line 2 of test.cir; remove one of the two");
}

TEST(BadNetlist, CyclicParametersAreToldWithTheirPath) {
  EXPECT_EQ(ErrorOfBuilding(".param a={b} b={c+1}\n.param c={a}\nR1 x 0 {a}\n"),
            "test.cir:2: parameter 'c': parameter 'a' depends on itself: a -> b -> c -> a; break the circle");
}

TEST(BadNetlist, RecursiveParameterOfASubcircuit) {
  EXPECT_EQ(ErrorOfBuilding(".param r=1\n.subckt s a r={r}\nR1 a 0 {r}\n.ends\nX1 x s\n"),
            "test.cir:3: parameter 'r': parameter 'r' depends on itself: r -> r; break the circle");
}

TEST(BadNetlist, ChainsOfParametersAreBounded) {
  std::string lines = ".param p0=1\n";
  for (int i = 1; i < 5000; ++i)
    lines += ".param p" + Text(i) + "={p" + Text(i - 1) + "}\n";
  EXPECT_NE(ErrorOfBuilding(lines + "R1 a 0 {p4999}\n").find("depend on each other more than 500 deep"),
            std::string::npos);
}

TEST(BadNetlist, NamesThatCannotBeParameters) {
  EXPECT_NE(ErrorOfReading(".param pi=3\n").find("'pi' can't be the name of a parameter"), std::string::npos);
  EXPECT_NE(ErrorOfReading(".param 2x=3\n").find("'2x' can't be the name of a parameter"), std::string::npos);
  EXPECT_NE(ErrorOfReading(".param x 3\n").find("'x' stands where NAME=VALUE should"), std::string::npos);
  EXPECT_NE(ErrorOfReading(".param\n").find("no parameter is given"), std::string::npos);
}

TEST(BadNetlist, DivisionByZeroNamesTheElement) {
  EXPECT_EQ(ErrorOfBuilding(".param z=0\nR1 x 0 {1/z}\n"),
            "test.cir:3: R1: division by zero in '1/z'; check the values it is made of");
}

TEST(BadNetlist, ResultsThatAreNotFinite) {
  EXPECT_NE(ErrorOfBuilding("R1 x 0 {sqrt(0-1)}\n").find("test.cir:2: R1: 'sqrt(0-1)' is not a finite number"),
            std::string::npos);
  EXPECT_NE(ErrorOfBuilding("R1 x 0 {exp(1e6)}\n").find("is not a finite number"), std::string::npos);
}

TEST(BadNetlist, UndefinedSubcircuit) {
  EXPECT_EQ(ErrorOfBuilding("X1 a 0 filter\n"), "test.cir:2: X1: subcircuit 'filter' is not defined; define it with "
                                                ".subckt or include the file that does");
}

TEST(BadNetlist, ANestedSubcircuitIsNotKnownOutside) {
  EXPECT_NE(ErrorOfBuilding(".subckt o a\n.subckt i a\nR1 a 0 1\n.ends\nX1 a i\n.ends\nX1 a o\nX2 a i\n")
                .find("test.cir:9: X2: subcircuit 'i' is not defined"),
            std::string::npos);
}

TEST(BadNetlist, WrongNumberOfSubcircuitNodes) {
  EXPECT_EQ(ErrorOfBuilding(".subckt f a b\nR1 a b 1\n.ends\nX1 a 0 c f\n"),
            "test.cir:5: X1: it has 3 nodes, subcircuit 'f' has 2; connect each node of the subcircuit");
  EXPECT_NE(ErrorOfReading("X1 f\n").find("nodes and the subcircuit's name are missing"), std::string::npos);
}

TEST(BadNetlist, UnknownParameterOfASubcircuit) {
  EXPECT_EQ(
      ErrorOfBuilding(".subckt f a r=1\nR1 a 0 {r}\n.ends\nX1 a f q=2\n"),
      "test.cir:5: X1: subcircuit 'f' has no parameter 'q'; declare it with a default on the .subckt line or check "
      "its spelling");
}

TEST(BadNetlist, RecursiveSubcircuitsAreToldWithTheirPath) {
  EXPECT_EQ(ErrorOfBuilding(".subckt a p\nX1 p b\n.ends\n.subckt b p\nX2 p a\n.ends\nX0 in a\n"),
            "test.cir:6: X0.X1.X2: subcircuit 'a' contains itself: a -> b -> a; break the circle");
}

TEST(BadNetlist, InstancesNestedTooDeep) {
  std::string lines = ".subckt s0 a\nR1 a 0 1\n.ends\n";
  for (int i = 1; i < 200; ++i)
    lines += ".subckt s" + Text(i) + " a\nX1 a s" + Text(i - 1) + "\n.ends\n";
  EXPECT_NE(ErrorOfBuilding(lines + "X1 in s199\n").find("instances are nested more than 100 deep"), std::string::npos);
}

TEST(BadNetlist, SubcircuitsThatMultiplyAreRefused) {
  std::string lines = ".subckt s0 a\n.ends\n";
  for (int i = 1; i < 40; ++i) {
    std::string const inner = " a s" + Text(i - 1) + "\n";
    lines += ".subckt s" + Text(i) + " a\nX1" + inner + "X2" + inner + "X3" + inner + ".ends\n";
  }
  EXPECT_NE(ErrorOfBuilding(lines + "X1 in s39\n").find("more than 1000000 elements"), std::string::npos);
}

TEST(BadNetlist, DefinitionsNestedTooDeep) {
  std::string lines;
  for (int i = 0; i < 100; ++i)
    lines += ".subckt s" + Text(i) + " a\n";
  EXPECT_NE(ErrorOfReading(lines).find("subcircuits are defined more than 64 deep in each other"), std::string::npos);
}

TEST(BadNetlist, SubcircuitsThatAreNotWellFormed) {
  EXPECT_NE(ErrorOfReading(".subckt f a\nR1 a 0 1\n").find(".subckt f: the subcircuit is not closed"),
            std::string::npos);
  EXPECT_NE(ErrorOfReading(".ends\n").find("there is no open subcircuit"), std::string::npos);
  EXPECT_NE(ErrorOfReading(".subckt f a\n.ends g\n").find("the open subcircuit is 'f'"), std::string::npos);
  EXPECT_NE(ErrorOfReading(".subckt f\n.ends\n").find("its name or its nodes are missing"), std::string::npos);
  EXPECT_NE(ErrorOfReading(".subckt f a A\n.ends\n").find("its node 'a' stands twice"), std::string::npos);
  EXPECT_NE(ErrorOfReading(".subckt f 0\n.ends\n").find("ground can't be one of its nodes"), std::string::npos);
  EXPECT_NE(ErrorOfReading(".subckt f a\n.ends\n.subckt F a\n.ends\n").find("defined twice, first in line 2"),
            std::string::npos);
}

TEST(BadNetlist, LinesWithoutALength) {
  EXPECT_NE(ErrorOfBuilding("T1 a 0 b 0 z0=50\n").find("its length is not told exactly once"), std::string::npos);
  EXPECT_NE(ErrorOfBuilding("T1 a 0 b 0 z0=50 td=1n f=1g\n").find("its length is not told exactly once"),
            std::string::npos);
  EXPECT_NE(ErrorOfBuilding("T1 a 0 b 0 td=1n\n").find("its impedance is missing"), std::string::npos);
  EXPECT_NE(ErrorOfBuilding("T1 a 0 b 0 z0=0 td=1n\n").find("its impedance Z0 is 0"), std::string::npos);
  EXPECT_NE(ErrorOfBuilding("T1 a 0 b 0 z0=50 td=-1n\n").find("its delay TD is -1e-09"), std::string::npos);
  EXPECT_NE(ErrorOfBuilding("T1 a 0 b 0 z0=50 f=0\n").find("its frequency F is 0"), std::string::npos);
}

TEST(BadNetlist, CouplingOfAnUnknownInductor) {
  EXPECT_EQ(ErrorOfBuilding("L1 a 0 1n\nK1 L1 L2 0.5\n"),
            "test.cir:3: K1: it couples 'L2', which is not an inductor of this circuit; name two inductors of the same "
            "(sub)circuit");
  EXPECT_NE(ErrorOfBuilding("L1 a 0 1n\nR2 a 0 1\nK1 L1 R2 0.5\n").find("it couples 'R2'"), std::string::npos);
}

TEST(BadNetlist, CouplingFactorsBeyondOne) {
  EXPECT_EQ(ErrorOfBuilding("L1 a 0 1n\nL2 a 0 1n\nK1 L1 L2 1.01\n"),
            "test.cir:4: K1: its coupling factor is 1.01; give a factor between -1 and 1");
  EXPECT_NE(ErrorOfBuilding("L1 a 0 1n\nL2 a 0 1n\nK1 L1 L2 -2\n").find("its coupling factor is -2"),
            std::string::npos);
}

TEST(BadNetlist, CouplingsThatMakeNoSense) {
  EXPECT_NE(ErrorOfBuilding("L1 a 0 1n\nK1 L1 L1 0.5\n").find("it couples an inductor to itself"), std::string::npos);
  EXPECT_NE(ErrorOfBuilding("L1 a 0 1n\nL2 a 0 1n\nK1 L1 L2 .5\nK2 L2 L1 .5\n").find("coupled already"),
            std::string::npos);
  EXPECT_NE(ErrorOfBuilding("L1 a 0 -1n\nL2 a 0 1n\nK1 L1 L2 .5\n").find("whose inductance is not positive"),
            std::string::npos);
  EXPECT_NE(ErrorOfReading("K1 L1\n").find("the second inductor is missing"), std::string::npos);
  EXPECT_NE(ErrorOfReading("K1 L1 L2 L3 0.5\n").find("'0.5' stands behind the factor"), std::string::npos);
}

TEST(BadNetlist, UnknownControllingSource) {
  EXPECT_EQ(
      ErrorOfBuilding("R1 a 0 1\nF1 a 0 V9 2\n"),
      "test.cir:3: F1: its controlling source 'V9' is not a voltage source of this circuit; name a voltage source of "
      "the same (sub)circuit; 'V1 A B 0' measures a current");
  EXPECT_NE(ErrorOfBuilding("R1 a 0 1\nH1 a 0 R1 2\n").find("its controlling source 'R1'"), std::string::npos);
}

TEST(BadNetlist, OpenControllingInputs) {
  EXPECT_EQ(
      ErrorOfBuilding("R1 out 0 1\nE1 out 0 inn 0 2\n"),
      "test.cir:3: E1: its controlling node 'inn' is connected to nothing else; connect it or check its spelling");
  EXPECT_NE(ErrorOfBuilding("R1 out 0 1\nG1 out 0 0 inn 2\n").find("its controlling node 'inn'"), std::string::npos);
}

TEST(BadNetlist, LoopsOfVoltageSources) {
  EXPECT_EQ(
      ErrorOfBuilding("V1 a 0 1\nV2 b a 1\nR1 a b 1\nE1 b 0 a 0 2\n"),
      "test.cir:5: E1: it closes a loop of voltage sources or shorts between nodes 'b' and '0'; put a resistor into "
      "the loop or remove the element");
  EXPECT_NE(ErrorOfBuilding("V1 a a 1\nR1 a 0 1\n").find("V1: it closes a loop"), std::string::npos);
  EXPECT_NE(ErrorOfBuilding("R1 a 0 0\nR2 a 0 0\n").find("R2: it closes a loop"), std::string::npos);
}

TEST(BadNetlist, FloatingParts) {
  EXPECT_EQ(
      ErrorOfBuilding("R1 a 0 1\nR2 b c 1\n"),
      "test.cir:3: R2: its node 'b' floats: it has no path to ground; connect that part of the circuit to node 0, if "
      "need be by a large resistor");
  EXPECT_NE(ErrorOfBuilding("L1 a 0 1n\nL2 b c 1n\nK1 L1 L2 .5\n").find("L2: its node 'b' floats"), std::string::npos);
  EXPECT_NE(ErrorOfBuilding("R1 a 0 1\nI1 b 0 1\n").find("I1: its node 'b' floats"), std::string::npos);
}

TEST(BadNetlist, PortNumbersWithGapsOrTwice) {
  EXPECT_EQ(ErrorOfBuilding("V1 a 0 portnum 1\nV3 a 0 portnum 3\n"),
            "test.cir:3: V3: it is port 3, but there is no port 2; number the ports 1, 2, 3, ... without gaps");
  EXPECT_EQ(ErrorOfBuilding("V1 a 0 portnum 1\nV2 b 0 portnum 1\nR1 a b 1\n"),
            "test.cir:3: V2: port 1 is there already; give each port its own number");
  EXPECT_NE(ErrorOfBuilding("V1 a 0 portnum 2\n").find("it is port 2, but there is no port 1"), std::string::npos);
}

TEST(BadNetlist, PortsThatMakeNoSense) {
  EXPECT_EQ(ErrorOfBuilding("V1 a 0 portnum 1 z0 0\n"),
            "test.cir:2: V1: its reference impedance z0 is 0; give a positive value");
  EXPECT_NE(ErrorOfBuilding("V1 a 0 portnum 1 z0 -50\n").find("z0 is -50"), std::string::npos);
  EXPECT_NE(ErrorOfBuilding("V1 a 0 portnum 1.5\n").find("the port number 1.5 is not a whole number"),
            std::string::npos);
  EXPECT_NE(ErrorOfBuilding("V1 a 0 portnum 0\n").find("the port number 0 is not a whole number"), std::string::npos);
  EXPECT_NE(ErrorOfBuilding("V1 a 0 z0 50\nR1 a 0 1\n").find("it has a z0 but is no port"), std::string::npos);
  EXPECT_NE(ErrorOfBuilding("I1 a 0 portnum 1 z0 50\nR1 a 0 1\n").find("a current source can't be a port"),
            std::string::npos);
}

TEST(BadNetlist, ACircuitWithoutPortsHasNoSParameters) {
  auto const circuit = Build("R1 a 0 1\n");
  EXPECT_EQ(ErrorOf([&] { rf::SParameterSolver solver(circuit); }),
            "test.cir: circuit: it has no ports; add voltage sources such as 'V1 in 0 dc 0 ac 1 portnum 1 z0 50'");
}

TEST(BadNetlist, AnEmptyNetlistHasNoPortsEither) {
  for (char const * text : {"", "\n", "only a title", "title\n.end\n", "title\n* nothing\n"}) {
    auto const circuit = rf::Elaborate(rf::ReadNetlistText(text, "empty.cir"));
    EXPECT_NE(ErrorOf([&] { rf::SParameterSolver solver(circuit); }).find("empty.cir: circuit: it has no ports"),
              std::string::npos);
  }
}

TEST(BadNetlist, SenselessSweepsAreToldOnReading) {
  EXPECT_EQ(ErrorOfReading(".sp lin 0 1k 2k\n"),
            "test.cir:2: .sp: 0 is not a number of points; give a whole number from 1");
  EXPECT_EQ(ErrorOfReading(".sp lin 5 2k 1k\n"),
            "test.cir:2: .sp: it starts at 2000 Hz, above its end at 1000 Hz; exchange the two");
  EXPECT_EQ(ErrorOfReading(".sp dec 5 0 1k\n"),
            "test.cir:2: .sp: a logarithmic sweep can't start at 0 Hz; start above 0 Hz or use lin");
  EXPECT_NE(ErrorOfReading(".sp oct 5 -1 1k\n").find("the frequency -1 Hz is negative"), std::string::npos);
  EXPECT_NE(ErrorOfReading(".sp lin 1e9 1 1k\n").find("1000000000 points are too many"), std::string::npos);
  EXPECT_NE(ErrorOfReading(".sp log 5 1 1k\n").find("is not a sweep"), std::string::npos);
  EXPECT_NE(ErrorOfReading(".sp lin 5 1\n").find("is not a sweep"), std::string::npos);
  EXPECT_NE(ErrorOfReading(".sp list\n").find("is not a sweep"), std::string::npos);
  EXPECT_NE(ErrorOfReading(".sp lin 2.5 1 1k\n").find("2.5 is not a number of points"), std::string::npos);
}

TEST(BadNetlist, SenselessSettingsOfAnAdaptiveSweepAreToldOnReading) {
  EXPECT_EQ(
      ErrorOfReading(".sp lin 5 1 2 adaptive target=2\n"),
      "test.cir:2: .sp: target=2 makes no sense; give the largest change of an S-parameter, between 0 and 1, such "
      "as 1e-5");
  EXPECT_EQ(ErrorOfReading(".sp lin 5 1 2 adaptive speed=2\n"),
            "test.cir:2: .sp: an adaptive sweep has no setting 'speed'; use target, passes or most");
  EXPECT_EQ(ErrorOfReading(".sp lin 5 1 2 direct target=1e-3\n"),
            "test.cir:2: .sp: a direct sweep has no settings; remove them, or write adaptive for direct");
  EXPECT_EQ(ErrorOfReading(".sp lin 5 1 2 adaptive passes=2 passes=3\n"),
            "test.cir:2: .sp: 'passes' is set twice; remove one of the two");
  EXPECT_EQ(
      ErrorOfReading(".sp lin 5 1 2 z0=50\n"),
      "test.cir:2: .sp: z0 is that of the Touchstone file, and none is asked for; write touchstone in front of it");
  EXPECT_EQ(ErrorOfReading(".sp lin 5 1 2 touchstone z0=0\n"),
            "test.cir:2: .sp: z0=0 makes no sense; give an impedance in ohm, such as 50");
  EXPECT_EQ(ErrorOfReading(".sp lin 5 1 2 voltages=-1\n"),
            "test.cir:2: .sp: voltages=-1 makes no sense; give frequencies in hertz, from 0");
  EXPECT_EQ(ErrorOfReading(".sp lin 5 1 2 voltages=1 touchstone voltages=2\n"),
            "test.cir:2: .sp: 'voltages' stands twice; remove one of the two");
  EXPECT_NE(ErrorOfReading(".sp lin 5 1 2 adaptive 3\n").find("test.cir:2: .sp: "), std::string::npos);
  EXPECT_NE(ErrorOfReading(".sp lin 5 adaptive\n").find("test.cir:2: .sp: "), std::string::npos);
}

TEST(BadNetlist, ErrorsStayOnOneLineWhateverTheFileHolds) {
  std::string const error = ErrorOfReading("Z\x01\x1b[31m" + std::string(5000, 'x') + " a b\n");
  EXPECT_LT(error.size(), 1000u);
  EXPECT_EQ(error.find_first_of("\x01\x1b\n"), std::string::npos);
}

TEST(BadNetlist, AnErrorKnowsItsParts) {
  try {
    Read("R1 a 0 5\nQ1 c b e\n");
    FAIL();
  } catch (rf::NetlistError const & error) {
    EXPECT_EQ(error.File(), "test.cir");
    EXPECT_EQ(error.Line(), 3);
    EXPECT_EQ(error.Thing(), "Q1");
    EXPECT_EQ(error.Message(), "unknown element");
    EXPECT_FALSE(error.Remedy().empty());
  }
}

} // namespace
