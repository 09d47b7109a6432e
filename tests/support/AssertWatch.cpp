#include "tests/support/AssertWatch.h"

#include "basekit/diag/Assert.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace support {

namespace {

std::vector<std::string> s_reported;
std::vector<std::string> s_expected;

void Remember(char const *, int, char const * condition) { s_reported.emplace_back(condition); }

class Listener : public testing::EmptyTestEventListener {
  void OnTestStart(testing::TestInfo const &) override {
    s_reported.clear();
    s_expected.clear();
    ResetAssertSites();
    SetAssertHandler(Remember);
  }
  void OnTestEnd(testing::TestInfo const &) override {
    for (auto const & expected : s_expected) {
      auto const at = std::find(s_reported.begin(), s_reported.end(), expected);
      if (at == s_reported.end())
        ADD_FAILURE() << "expected assertion was not reported: " << expected;
      else
        s_reported.erase(at);
    }
    for (auto const & report : s_reported)
      ADD_FAILURE() << "unexpected assertion: " << report;
  }
};

[[maybe_unused]] bool const s_installed = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new Listener);
  return true;
}();

} // namespace

void AssertWatch::Expect(std::string const & condition) { s_expected.push_back(condition); }

std::vector<std::string> AssertWatch::Take() {
  std::vector<std::string> taken;
  taken.swap(s_reported);
  return taken;
}

} // namespace support
