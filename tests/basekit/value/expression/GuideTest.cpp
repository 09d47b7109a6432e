// The guide to expressions says what the language does.

#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/expression/FunctionTable.h"
#include "tests/basekit/value/expression/Evaluator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

namespace {

std::string Guide() {
  std::ifstream file(SOURCE_FOLDER "/docs/expressions.md");
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

struct Example {
  std::string expression;
  std::string value;
};

// The rows "| `expression` | value |"; other lines are passed over.
std::vector<Example> ExamplesOf(std::string const & guide) {
  std::vector<Example> examples;
  std::istringstream lines(guide.substr(std::min(guide.find("## Examples"), guide.size())));
  for (std::string line; std::getline(lines, line);) {
    std::size_t const close = line.find("` | ");
    std::size_t const end = close == std::string::npos ? close : line.find(" |", close + 4);
    if (line.starts_with("| `") && end != std::string::npos)
      examples.push_back({line.substr(3, close - 3), line.substr(close + 4, end - close - 4)});
  }
  return examples;
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
  auto const examples = ExamplesOf(Guide());
  for (Example const & example : examples) {
    support::Evaluator world;
    double told = 0.0;
    ASSERT_TRUE(text::ParseReal(example.value, told)) << example.value;
    double const value = world.Number(text::FromUtf8(example.expression));
    EXPECT_TRUE(std::isnan(told) ? std::isnan(value)
                                 : value == told || std::fabs(value - told) <= 1e-14 * std::fabs(told))
        << example.expression << " is " << value;
  }
  EXPECT_GE(examples.size(), 15u);
}
