#pragma once

#include <string_view>
#include <vector>

namespace expr {

/// The numbers that have names: pi, c0, eps0, mu0 in SI units, inf and nan.  Variables of the same name come first.
bool FindConstant(std::wstring_view name, double & value);

std::vector<std::wstring_view> ConstantNames();

} // namespace expr
