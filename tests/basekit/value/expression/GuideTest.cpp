// The guide to expressions says what the language does.

#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/expression/FunctionTable.h"
#include "tests/basekit/value/expression/Evaluator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <regex>
#include <sstream>

namespace {

std::string Guide() {
  std::ifstream file(SOURCE_FOLDER "/docs/expressions.md");
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

} // namespace

TEST(ExpressionGuide, NamesEveryFunction) {
  std::string const guide = Guide();
  std::vector<std::wstring_view> names = {expr::interpolationName};
  for (expr::ElementFunction const & function : expr::ElementFunctions())
    names.push_back(function.name);
  for (expr::ColumnFunction const & function : expr::ColumnFunctions())
    names.push_back(function.name);
  for (std::wstring_view const name : names)
    EXPECT_NE(guide.find("`" + text::ToUtf8(name) + "("), std::string::npos) << text::ToUtf8(name);
}

TEST(ExpressionGuide, ItsExamplesHaveTheValuesThatItTells) {
  std::string const guide = Guide();
  std::size_t const start = guide.find("## Examples");
  ASSERT_NE(start, std::string::npos);
  std::string const examples = guide.substr(start);
  std::regex const row("\\| `([^`]+)` \\| ([^ |]+) \\|");
  int count = 0;
  for (std::sregex_iterator at(examples.begin(), examples.end(), row), end; at != end; ++at, ++count) {
    support::Evaluator world;
    double told = 0.0;
    ASSERT_TRUE(text::ParseReal((*at)[2].str(), told)) << (*at)[2];
    double const value = world.Number(text::FromUtf8((*at)[1].str()));
    EXPECT_TRUE(std::isnan(told) ? std::isnan(value)
                                 : value == told || std::fabs(value - told) <= 1e-14 * std::fabs(told))
        << (*at)[1] << " is " << value;
  }
  EXPECT_GE(count, 15);
}
