#include "products/command/output/OutputText.h"

#include "products/command/source/SolverFile.h"
#include "products/command/source/SourceError.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace {

using command::OutputLine;
using command::QuantityLine;
using Form = OutputLine::Form;
using Kind = QuantityLine::Kind;
using Values = std::vector<double>;

OutputLine Output(Form form, std::vector<std::pair<std::string, Kind>> const & wanted, bool hasHeader = true) {
  OutputLine output;
  output.form = form;
  output.file = "out";
  output.hasHeader = hasHeader;
  for (auto const & [where, kind] : wanted)
    output.quantities.push_back({"q" + std::to_string(output.quantities.size()), kind, where, {}, {}, 0});
  return output;
}

Values Read(OutputLine const & output, std::string const & text) {
  Values all;
  for (auto const & quantity : command::ReadOutputText(output, text))
    all.insert(all.end(), quantity.values.begin(), quantity.values.end());
  return all;
}

void ExpectRefused(OutputLine const & output, std::string const & text, std::vector<std::string> const & parts) {
  try {
    command::ReadOutputText(output, text);
    ADD_FAILURE() << "not refused: " << text;
  } catch (command::SourceError const & error) {
    for (std::string const & part : parts)
      EXPECT_NE(std::string(error.what()).find(part), std::string::npos) << error.what();
  }
}

TEST(OutputText, TakesColumnsByTheirNamesInAnyOrder) {
  auto const output = Output(Form::kCsv, {{"h", Kind::kColumn}, {"t", Kind::kLast}, {"t", Kind::kFirst}});
  EXPECT_EQ(Read(output, "\xEF\xBB\xBF# made by hand\r\n t , \"h\",x\r\n0,+1.5,no\r\n\r\n1,-2e3,words\n"),
            (Values{1.5, -2000, 1, 0}));
}

TEST(OutputText, TakesColumnsByTheirNumbersWithoutAHeader) {
  EXPECT_EQ(Read(Output(Form::kTable, {{"2", Kind::kColumn}}, false), "  1   2\n3\t4 \n"), (Values{2, 4}));
  EXPECT_EQ(Read(Output(Form::kTable, {{"b", Kind::kOnly}}), "a b\n1 2\n"), (Values{2}));
}

TEST(OutputText, RefusesTablesThatDontHoldWhatIsWanted) {
  auto const output = Output(Form::kCsv, {{"y", Kind::kColumn}});
  ExpectRefused(output, "", {"out", "empty"});
  ExpectRefused(output, "y\n", {"q0", "no value"});
  ExpectRefused(output, "x,z\n1,2\n", {"out:1", "'y'", "x, z"});
  ExpectRefused(output, "y,y\n1,2\n", {"two columns"});
  ExpectRefused(output, "x,y\n1,2\n3\n", {"out:3", "1 values", "2 columns", "cut"});
  ExpectRefused(output, "x,y\n1,\n", {"out:2", "no number"});
  ExpectRefused(Output(Form::kCsv, {{"3", Kind::kColumn}}, false), "1,2\n", {"out:1", "no column 3"});
  ExpectRefused(Output(Form::kCsv, {{"y", Kind::kOnly}}), "y\n1\n2\n", {"2 values", "last"});
}

TEST(OutputText, RefusesHalfNumbersAndNumbersThatAreNotFinite) {
  auto const output = Output(Form::kCsv, {{"y", Kind::kColumn}});
  for (char const * half : {"1.5e", "12abc", "1.2.3", "1 2", "--1", "+-1", "+", "0x10", "1,5"})
    ExpectRefused(output, std::string("y\n\"") + half + "\"\n", {"out:2", "is no number"});
  for (char const * number : {"nan", "NaN", "-nan", "inf", "-inf", "Infinity"})
    ExpectRefused(output, std::string("y\n") + number + "\n", {"out:2", "not finite"});
}

TEST(OutputText, ANumberThatCantBeHeldIsToldAsSuch) {
  auto const output = Output(Form::kCsv, {{"y", Kind::kColumn}});
  for (std::string const & number : {std::string("1e999"), std::string("-1.5E-4000"), std::string(400, '9')})
    ExpectRefused(output, "y\n" + number + "\n", {"out:2", "too large or too small"});
}

TEST(OutputText, AFilePartedBySemicolonsIsToldAboutCommas) {
  ExpectRefused(Output(Form::kCsv, {{"y", Kind::kColumn}}), "x;y\n1;2\n", {"out:1", "no column 'y'", "by commas"});
  ExpectRefused(Output(Form::kCsv, {{"1", Kind::kColumn}}, false), "1;2\n", {"'1;2' is no number", "by commas"});
}

TEST(OutputText, ANulByteDoesNotCutWhatIsTold) {
  ExpectRefused(Output(Form::kCsv, {{"y", Kind::kColumn}}), std::string("y\n1\0 5\n", 7), {"'1\\0 5' is no number"});
}

TEST(OutputText, RefusesNumbersOfALastLineWithoutAnEndSinceTheyMayBeCut) {
  ExpectRefused(Output(Form::kCsv, {{"y", Kind::kColumn}}), "y\n12.3", {"out:2", "no line end", "cut"});
  ExpectRefused(Output(Form::kTable, {{"1", Kind::kColumn}}, false), "1 2\n3 4", {"out:2", "no line end"});
  EXPECT_EQ(Read(Output(Form::kCsv, {{"y", Kind::kColumn}}), "y\r\n12.3\r\n# done"), (Values{12.3}));
}

TEST(OutputText, TakesNumbersOfJsonByPointers) {
  std::string const text = R"({"a": {"b/c": 1.5}, "list": [1, 2, 3], "rows": [{"x": 4}, {"x": 5}], "n": 7})";
  EXPECT_EQ(Read(Output(Form::kJson, {{"/a/b~1c", Kind::kOnly}}), text), (Values{1.5}));
  EXPECT_EQ(Read(Output(Form::kJson, {{"/list", Kind::kColumn}, {"/list/1", Kind::kOnly}}), text),
            (Values{1, 2, 3, 2}));
  EXPECT_EQ(Read(Output(Form::kJson, {{"/rows/*/x", Kind::kColumn}, {"/list/*", Kind::kLast}}), text),
            (Values{4, 5, 3}));
  EXPECT_EQ(Read(Output(Form::kJson, {{"", Kind::kOnly}}), "3"), (Values{3}));
}

TEST(OutputText, RefusesJsonThatDoesNotHoldWhatIsWanted) {
  auto const output = Output(Form::kJson, {{"/y", Kind::kColumn}});
  ExpectRefused(output, "", {"no JSON", "byte"});
  ExpectRefused(output, R"({"y": 1)", {"no JSON", "ends too early, after byte 7", "cut"});
  ExpectRefused(output, R"({"y": NaN})", {"no JSON", "NaN"});
  ExpectRefused(output, R"({"y": 1e999})", {"no JSON"});
  ExpectRefused(output, R"({"x": 1, "z": 2})", {"nothing at '/y'", "x, z"});
  ExpectRefused(Output(Form::kJson, {{"/y/nix", Kind::kOnly}}), R"({"y": {"u": 1, "v": 2}, "z": 2})",
                {"in /y there are u, v"});
  ExpectRefused(Output(Form::kJson, {{"/y/~5/a", Kind::kOnly}}), R"({"y": {"u": 1}})",
                {"nothing at", "in /y there are u"});
  ExpectRefused(output, R"({"y": "1"})", {"no number"});
  ExpectRefused(output, R"({"y": [1, null]})", {"no number"});
  ExpectRefused(output, R"({"y": []})", {"no value"});
  ExpectRefused(Output(Form::kJson, {{"/y/*/x", Kind::kColumn}}), R"({"y": {}})", {"no list"});
}

TEST(OutputText, JsonNestedVeryDeeplyIsNoCrash) {
  ExpectRefused(Output(Form::kJson, {{"/y", Kind::kColumn}}), std::string(200'000, '['), {"no JSON"});
}

} // namespace
