#include "tests/products/command/SolverFileFixture.h"

namespace {

using commandtest::kRest;
using commandtest::SolverFileTest;

class SolverFile : public SolverFileTest {};

TEST_F(SolverFile, ReadsAllItsStatements) {
  Write("in.template", "x = {x}\n");
  Write("data.txt", "1 2 3");
  auto const file = Read("# a remark\n"
                         "variable x = 2.5e-3 mm\r\n"
                         "  variable n=3\n"
                         "setting method = \"rk 4\"\n"
                         "setup Run1\n"
                         "setup \"Second one\" method=euler\n"
                         "template in.template as sub/in.txt\n"
                         "file data.txt\n"
                         "command ./solve --n={n} \"a b\"\n"
                         "input data.txt\n"
                         "time-limit 2.5 s\n"
                         "output-limit 0.5 MB\n"
                         "success 0 3\n"
                         "output csv out.csv\n"
                         "column t = time unit s\n"
                         "column h = \"the height\" over t unit m\n"
                         "scalar last_h = \"the height\" last\n"
                         "output json stdout\n"
                         "scalar mass = /results/mass unit kg\n");
  ASSERT_EQ(file.variables.size(), 2u);
  EXPECT_EQ(file.variables[0].value, 2.5e-3);
  EXPECT_EQ(file.variables[0].unit, "mm");
  EXPECT_EQ(file.settings, (command::HoleValues{{"method", "rk 4"}}));
  ASSERT_EQ(file.setups.size(), 2u);
  EXPECT_EQ(file.setups[1].name, "Second one");
  EXPECT_EQ(file.setups[1].settings, (command::HoleValues{{"method", "euler"}}));
  ASSERT_EQ(file.inputs.size(), 2u);
  EXPECT_EQ(file.inputs[0].name, "sub/in.txt");
  EXPECT_EQ(file.inputs[1].path, PathOf("data.txt"));
  ASSERT_EQ(file.words.size(), 3u);
  EXPECT_EQ(file.words[0].Text(), PathOf("solve"));
  EXPECT_EQ(file.words[1].Fill({{"N", "3"}}), "--n=3");
  EXPECT_EQ(file.words[2].Text(), "a b");
  EXPECT_EQ(file.timeLimit, 2.5);
  EXPECT_EQ(file.outputLimit, 0.5e6);
  EXPECT_EQ(file.successCodes, (std::vector<int>{0, 3}));
  ASSERT_EQ(file.outputs.size(), 2u);
  EXPECT_EQ(file.outputs[0].quantities[1].over, "t");
  EXPECT_EQ(file.outputs[0].quantities[2].kind, command::QuantityLine::Kind::kLast);
  EXPECT_EQ(file.outputs[1].quantities[0].where, "/results/mass");
}

TEST_F(SolverFile, WithoutASetupGetsOne) {
  auto const file = Read(kRest);
  ASSERT_EQ(file.setups.size(), 1u);
  EXPECT_EQ(file.setups[0].name, "Run");
}

TEST_F(SolverFile, AShellLineIsTakenAsItStands) {
  auto const file = Read("variable a = 1\nshell  echo y; echo \"{a}\" | head -1\noutput csv stdout\nscalar y = y\n");
  EXPECT_TRUE(file.usesShell);
  ASSERT_EQ(file.words.size(), 1u);
  EXPECT_EQ(file.words[0].Fill({{"a", "7"}}), "  echo y; echo \"7\" | head -1");
}

TEST_F(SolverFile, RefusesLinesThatMakeNoSenseWithTheirNumber) {
  std::string const rest = kRest;
  ExpectRefused("frob x\n" + rest, {"a.solver:1", "'frob'", "variable"});
  ExpectRefused("\nvariable 2x = 1\n" + rest, {"a.solver:2", "'2x'"});
  ExpectRefused("variable x\n" + rest, {"a.solver:1", "'='"});
  ExpectRefused("variable x = 1p\n" + rest, {"'1p'", "plain number"});
  ExpectRefused("variable x = nan\n" + rest, {"'nan'"});
  ExpectRefused("variable x = 1 m s\n" + rest, {"'s'", "more"});
  ExpectRefused("variable x = 1\nsetting X = 2\n" + rest, {"X", "twice"});
  ExpectRefused("setup A speed=1\n" + rest, {"a.solver:1", "setting", "speed"});
  ExpectRefused("setup A\nsetup a\n" + rest, {"a.solver:2", "twice"});
  ExpectRefused("setup \"a : b\"\n" + rest, {"colon"});
  ExpectRefused("template none.txt\n" + rest, {"a.solver:1", "none.txt", "can't be read"});
  ExpectRefused("file none.txt\n" + rest, {"a.solver:1", "none.txt"});
  ExpectRefused("time-limit 0\n" + rest, {"seconds"});
  ExpectRefused("success 256\n" + rest, {"0 to 255"});
  ExpectRefused("command \"open\n" + rest, {"a.solver:1", "not closed"});
  ExpectRefused(rest + "command other\n", {"a.solver:4", "line 1"});
  ExpectRefused("input in.txt\n" + rest, {"in.txt", "template"});
}

TEST_F(SolverFile, SettingsOfSetupsTakeItsOrderAndSpelling) {
  auto const file = Read("setting step = 1\nsetting Way = up\nsetup A WAY=down STEP=2\n" + std::string(kRest));
  EXPECT_EQ(file.setups.at(0).settings, (command::HoleValues{{"step", "2"}, {"Way", "down"}}));
  command::HoleValues fitted;
  EXPECT_EQ(command::FitSettings(file, {{"wAy", "x"}}, fitted), "");
  EXPECT_EQ(fitted, (command::HoleValues{{"Way", "x"}}));
  EXPECT_NE(command::FitSettings(file, {{"q", "20"}}, fitted).find("'q'; there are step, Way"), std::string::npos);
}

TEST_F(SolverFile, RefusesNamesThatLeadOutOfTheScratchFolder) {
  Write("in.txt", "");
  for (char const * name : {"/etc/passwd", "../x", "a/../../x", "a/", "."})
    ExpectRefused("template in.txt as " + std::string(name) + "\n" + kRest, {"a.solver:1", "scratch folder"});
  ExpectRefused("command true\noutput csv ../out.csv\nscalar y = y\n", {"a.solver:2", "scratch folder"});
}

TEST_F(SolverFile, RefusesOutputsThatMakeNoSense) {
  std::string const command = "command true\n";
  ExpectRefused(command, {"no output"});
  ExpectRefused("scalar y = y\n" + command, {"before any output"});
  ExpectRefused(command + "output csv stdout\n", {"a.solver:2", "nothing is taken"});
  ExpectRefused(command + "output xml stdout\n", {"'xml'", "json"});
  ExpectRefused(command + "output csv stdout\nscalar y = y\nscalar Y = z\n", {"a.solver:4", "two quantities"});
  ExpectRefused(command + "output csv stdout\ncolumn y = y over t\n", {"over 't'"});
  ExpectRefused(command + "output json stdout\nscalar y = y\n", {"JSON pointer"});
  ExpectRefused(command + "output table stdout no-header\nscalar y = y\n", {"number of a column"});
  ExpectRefused("output csv stdout\nscalar y = y\n", {"no command"});
}

TEST_F(SolverFile, RefusesHolesThatNothingFills) {
  Write("in.txt", "first line\nx = {x}\n");
  ExpectRefused("template in.txt\n" + std::string(kRest), {"in.txt:2", "{x}"});
  ExpectRefused("command solve {x}\noutput csv stdout\nscalar y = y\n", {"a.solver:1", "{x}"});
  Write("in.txt", "int main() {\n");
  ExpectRefused("template in.txt\n" + std::string(kRest), {"in.txt:1", "{{"});
}

TEST_F(SolverFile, NotesWhatMaySurprise) {
  Write("in.txt", "{angle}");
  auto const file = Read("variable angle = 45 deg\nvariable y = 1\ntemplate in.txt\n" + std::string(kRest));
  ASSERT_EQ(file.notes.size(), 3u);
  EXPECT_NE(file.notes[0].find("plain numbers"), std::string::npos);
  EXPECT_NE(file.notes[1].find("y: is the name of a variable too"), std::string::npos);
  EXPECT_NE(file.notes[2].find("variable y"), std::string::npos);
}

TEST_F(SolverFile, IsNoFolderAndNoBytes) {
  EXPECT_THROW(command::ReadSolverFile(m_folder.Path().string()), command::SourceError);
  EXPECT_THROW(command::ReadSolverFile(PathOf("none")), command::SourceError);
  ExpectRefused(std::string("\xff\xfe\0x", 4), {"UTF-8"});
}

class Fingerprint : public SolverFileTest {
protected:
  static constexpr char const * kText = "variable x = 1\nsetup A\ntemplate in.txt\nfile data.txt\ncommand solve {x}\n"
                                        "time-limit 5\noutput csv out.csv\nscalar y = y unit m\n";
  Fingerprint() {
    Write("in.txt", "{x}");
    Write("data.txt", "1 2 3");
  }
  std::string Of(std::string const & content) const { return command::FingerprintOf(Read(content)); }
  std::string With(std::string const & what, std::string const & other) const {
    std::string text = kText;
    return Of(text.replace(text.find(what), what.size(), other));
  }
};

TEST_F(Fingerprint, RemarksValuesSetupsAndLimitsDontCount) {
  EXPECT_EQ(Of(kText), Of("# remark\n\n" + std::string(kText)));
  EXPECT_EQ(Of(kText), With("x = 1", "x  =  2"));
  EXPECT_EQ(Of(kText), With("setup A", "setup B"));
  EXPECT_EQ(Of(kText), With("time-limit 5", "time-limit 6"));
}

TEST_F(Fingerprint, TemplatesFilesCommandAndOutputsCount) {
  std::string const former = Of(kText);
  EXPECT_NE(former, With("solve {x}", "solve -f {x}"));
  EXPECT_NE(former, With("command solve {x}", "shell solve {x}"));
  EXPECT_NE(former, With("y = y", "y = z"));
  EXPECT_NE(former, With("unit m", "unit mm"));
  EXPECT_NE(former, With("csv out", "table out"));
  Write("in.txt", "{x} ");
  EXPECT_NE(former, Of(kText));
  Write("in.txt", "{x}");
  EXPECT_EQ(former, Of(kText));
  Write("data.txt", "1 2 4");
  EXPECT_NE(former, Of(kText));
}

TEST(Template, FillsHolesAndKeepsOtherBraces) {
  command::Template const text("a={A}, {{literal}} {b}{b} }", "t");
  EXPECT_EQ(text.Fill({{"a", "1"}, {"B", "2"}}), "a=1, {literal}} 22 }");
  ASSERT_EQ(text.Holes().size(), 3u);
  EXPECT_THROW(command::Template("{", "t"), command::SourceError);
  EXPECT_THROW(command::Template("{}", "t"), command::SourceError);
  EXPECT_THROW(command::Template("{a b}", "t"), command::SourceError);
  EXPECT_THROW(command::Template("{a\n}", "t"), command::SourceError);
}

} // namespace
