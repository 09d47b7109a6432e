#include "basekit/value/expression/Constants.h"

#include <limits>
#include <numbers>

namespace expr {

namespace {

struct Constant {
  std::wstring_view name;
  double value;
};

// The electric and magnetic constants are the recommended values of 2018.
constexpr Constant constants[] = {
    {L"pi", std::numbers::pi},
    {L"c0", 299792458.0},
    {L"eps0", 8.8541878128e-12},
    {L"mu0", 1.25663706212e-6},
    {L"inf", std::numeric_limits<double>::infinity()},
    {L"nan", std::numeric_limits<double>::quiet_NaN()},
};

} // namespace

bool FindConstant(std::wstring_view name, double & value) {
  for (Constant const & constant : constants)
    if (constant.name == name) {
      value = constant.value;
      return true;
    }
  return false;
}

std::vector<std::wstring_view> ConstantNames() {
  std::vector<std::wstring_view> names;
  for (Constant const & constant : constants)
    names.push_back(constant.name);
  return names;
}

} // namespace expr
