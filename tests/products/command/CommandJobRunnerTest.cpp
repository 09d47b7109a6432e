#include "products/command/product/CommandJobRunner.h"

#include "basekit/io/CBlock.h"
#include "basekit/profile/CProfileUpdate.h"
#include "basekit/text/Utf8.h"
#include "products/command/product/CommandSetup.h"
#include "products/command/product/QuantityBlock.h"
#include "products/command/product/SettingsBlock.h"
#include "tests/products/command/SolverFileFixture.h"

#include <cstdlib>

namespace {

class Progress : public desktop::IJobProgress {
public:
  void Report(double, AString const &) override {}
  void ReportPass(io::CBlock_ptr<io::CBlock_func> const &, int) override {}
  void ReportConvergence(bool, AString const &, int) override {}
  void ReportProfile(CProfileUpdate const & update, int) override { updates.push_back(update); }
  std::vector<CProfileUpdate> updates;
};

class CommandJobRunner : public commandtest::SolverFileTest {
protected:
  CommandJobRunner() {
    std::filesystem::create_directory(PathOf("scratch"));
    ::setenv("TMPDIR", PathOf("scratch").c_str(), 1);
  }
  ~CommandJobRunner() override { ::unsetenv("TMPDIR"); }

  bool Solve(std::string const & content, AString const & variation = L"", command::HoleValues const & settings = {}) {
    Write("a.solver", content);
    desktop::SolveJob job;
    job.sourceFile = text::FromUtf8(PathOf("a.solver"));
    job.setupName = L"Run";
    job.setupType = command::CommandSetup::kTypeName;
    job.variation = variation;
    command::WriteSettings(job.settings, settings);
    m_result.Clear();
    m_error.clear();
    bool const isSolved = m_runner.Run(job, m_result, m_error, m_progress);
    EXPECT_TRUE(std::filesystem::is_empty(PathOf("scratch"))) << "the scratch folder is left";
    return isSolved;
  }
  std::vector<desktop::QuantityValues> Quantities() const {
    std::vector<desktop::QuantityValues> quantities;
    EXPECT_TRUE(command::ReadQuantities(m_result, quantities));
    return quantities;
  }
  void ExpectFailed(std::string const & content, std::vector<std::string> const & parts) {
    EXPECT_FALSE(Solve(content));
    for (std::string const & part : parts)
      EXPECT_NE(text::ToUtf8(m_error).find(part), std::string::npos) << text::ToUtf8(m_error);
  }

  command::CommandJobRunner m_runner;
  io::CBlock m_result{L"Items"};
  AString m_error;
  Progress m_progress;
};

TEST_F(CommandJobRunner, FillsTemplatesArgumentsAndInputAndTakesQuantities) {
  Write("in.template", "{a} {method}\n");
  std::string const content = "variable a = 1\nvariable b = 2\nsetting method = slow\n"
                              "template in.template as in.txt\ninput in.txt\n"
                              "shell read a m; echo name,x; echo $m,$a >&2; printf 'x,y\\n%s,{b}\\n3,4\\n' $a\n"
                              "output csv stdout\ncolumn x = x unit m\ncolumn y = y over x\nscalar last = y last\n";
  ASSERT_FALSE(Solve(content, L"a=0.5; b=-7")) << "the header line is not what was meant";
  std::string good = content;
  good.replace(good.find("echo name,x; "), 13, "");
  ASSERT_TRUE(Solve(good, L"a=0.5; b=-7", {{"method", "fast"}})) << text::ToUtf8(m_error);
  auto const quantities = Quantities();
  ASSERT_EQ(quantities.size(), 3u);
  EXPECT_EQ(quantities[0].values, (std::vector<double>{0.5, 3}));
  EXPECT_EQ(quantities[0].unit, L"m");
  EXPECT_EQ(quantities[1].values, (std::vector<double>{-7, 4}));
  EXPECT_EQ(quantities[1].over, L"x");
  EXPECT_TRUE(quantities[2].isScalar);
  EXPECT_EQ(quantities[2].values, (std::vector<double>{4}));
}

TEST_F(CommandJobRunner, ReportsWhatARunCost) {
  ASSERT_TRUE(Solve("shell sleep 0.1; echo y; echo 1\noutput csv stdout\nscalar y = y\n")) << text::ToUtf8(m_error);
  ASSERT_EQ(m_progress.updates.size(), 1u);
  EXPECT_EQ(m_progress.updates[0].GetKind(), CProfileUpdate::kTask);
  CProfileTask const & task = m_progress.updates[0].GetTask();
  EXPECT_EQ(task.GetName(), L"sh");
  EXPECT_GE(task.GetRealTime(), 0.1);
  EXPECT_GT(task.GetMemory(), 0.0);
  EXPECT_FALSE(Solve("command false\noutput csv stdout\nscalar y = y\n"));
  EXPECT_EQ(m_progress.updates.size(), 2u) << "a run that fails costs something too";
}

TEST_F(CommandJobRunner, WithoutAFolderForTemporaryFilesNothingIsMadeElsewhere) {
  ::setenv("TMPDIR", PathOf("none").c_str(), 1);
  ExpectFailed("shell echo y; echo 1\noutput csv stdout\nscalar y = y\n", {"scratch folder", "TMPDIR"});
}

TEST_F(CommandJobRunner, ReadsAnEditedSolverFileAnew) {
  ASSERT_TRUE(Solve("shell echo y; echo 1\noutput csv stdout\nscalar y = y\n"));
  ASSERT_TRUE(Solve("shell echo y; echo 22\noutput csv stdout\nscalar y = y\n"));
  EXPECT_EQ(Quantities()[0].values, (std::vector<double>{22}));
}

TEST_F(CommandJobRunner, FailuresNameTheThingAndTheLastWords) {
  std::string const out = "\noutput csv out.csv\nscalar y = y\n";
  ExpectFailed("shell echo working; echo no license >&2; exit 4" + out, {"exit status 4", "no license"});
  ExpectFailed("command false" + out, {"'false'", "exit status 1"});
  ExpectFailed("command no-such-program" + out, {"can't be started", "No such file"});
  ExpectFailed("shell kill -SEGV $$" + out, {"signal 11"});
  ExpectFailed("shell sleep 60\ntime-limit 0.2" + out, {"longer than 0.2 s", "time-limit"});
  ExpectFailed("shell sleep 60 &" + out, {"left 1 process running"});
  ExpectFailed("shell exec head -c 3000000 /dev/zero > out.csv\noutput-limit 1" + out, {"file of more than 1 MB"});
  ExpectFailed("shell trap '' XFSZ; head -c 3000000 /dev/zero > out.csv || exit 1\noutput-limit 1" + out,
               {"exit status 1, as a file came to 1 MB", "output-limit"});
  ExpectFailed("shell yes\noutput-limit 1\noutput csv stdout\nscalar y = y\n", {"printed more than 1 MB"});
  ExpectFailed("shell echo oops >&2" + out, {"out.csv", "left no such file"});
  ExpectFailed("shell mkfifo out.csv" + out, {"out.csv", "something else"});
  ExpectFailed("shell mkdir out.csv" + out, {"out.csv", "something else"});
  ExpectFailed("shell ln -s /etc/passwd out.csv" + out, {"out.csv", "something else"});
  ExpectFailed("shell : > out.csv; echo aborted >&2" + out, {"out.csv", "empty", "aborted"});
  ExpectFailed("shell printf 'y\\nnan\\n' > out.csv" + out, {"out.csv:2", "not finite"});
  ExpectFailed("shell printf 'y\\n1\\n2\\n' > out.csv" + out, {"2 values"});
}

TEST_F(CommandJobRunner, ExitCodesThatCountAsSuccessAreTold) {
  EXPECT_TRUE(Solve("shell echo y; echo 1; exit 3\nsuccess 0 3\noutput csv stdout\nscalar y = y\n"));
  ExpectFailed("shell echo y; echo 1\nsuccess 3\noutput csv stdout\nscalar y = y\n", {"exit status 0"});
}

TEST_F(CommandJobRunner, ColumnsThatRunTogetherAreEquallyLong) {
  ExpectFailed("shell echo '{{\"t\": [1, 2], \"h\": [1, 2, 3]}'\noutput json stdout\ncolumn t = /t\n"
               "column h = /h over t\n",
               {"h", "3 values", "has 2"});
}

TEST_F(CommandJobRunner, VariablesAndSettingsMustFit) {
  std::string const content =
      "variable a = 1\nsetting s = 1\nshell echo y; echo {a}{s}\noutput csv stdout\nscalar y = y\n";
  EXPECT_TRUE(Solve(content, L"A=4"));
  EXPECT_EQ(Quantities()[0].values, (std::vector<double>{41}));
  EXPECT_FALSE(Solve(content, L"a=4; b=5"));
  EXPECT_NE(m_error.find(AString(L"'b'")), AString::npos);
  EXPECT_FALSE(Solve(content, L""));
  EXPECT_NE(m_error.find(AString(L"variable a")), AString::npos);
  EXPECT_FALSE(Solve(content, L"a=word"));
  EXPECT_FALSE(Solve(content, L"a=4", {{"t", "1"}}));
  EXPECT_NE(m_error.find(AString(L"'t'")), AString::npos);
}

} // namespace
