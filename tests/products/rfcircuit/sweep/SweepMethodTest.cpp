#include "products/rfcircuit/engine/sweep/SweepMethod.h"
#include "tests/products/rfcircuit/RfSupport.h"

#include <cmath>

namespace {

using namespace rftest;

std::string Refusal(std::string const & name, double value) {
  return ErrorOf([&] {
    rf::SweepMethod method;
    method.Set(name, value);
  });
}

TEST(SweepMethod, TakesSensibleNumbers) {
  auto method = rf::SweepMethod::Adaptive();
  method.Set("target", 1e-7);
  method.Set("passes", 3);
  method.Set("most", 500);
  EXPECT_EQ(method.target, 1e-7);
  EXPECT_EQ(method.passes, 3);
  EXPECT_EQ(method.mostPoints, 500u);
  method.Set("most", 0);
  EXPECT_EQ(method.mostPoints, 0u);
}

TEST(SweepMethod, RefusesSenselessNumbers) {
  for (double const value : {0.0, -1e-5, 1.0, 1e9, std::nan(""), HUGE_VAL})
    EXPECT_NE(Refusal("target", value).find("makes no sense"), std::string::npos) << value;
  for (double const value : {0.0, 1.5, -2.0, 101.0, std::nan(""), HUGE_VAL})
    EXPECT_NE(Refusal("passes", value).find("makes no sense"), std::string::npos) << value;
  for (double const value : {3.0, 10.5, -1.0, 1e8, std::nan(""), HUGE_VAL})
    EXPECT_NE(Refusal("most", value).find("makes no sense"), std::string::npos) << value;
}

TEST(SweepMethod, RefusesAnUnknownSetting) {
  EXPECT_EQ(Refusal("speed", 1), "sweep: an adaptive sweep has no setting 'speed'; use target, passes or most");
}

} // namespace
