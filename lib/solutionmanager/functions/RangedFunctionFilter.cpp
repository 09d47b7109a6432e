#include "solutionmanager/functions/RangedFunctionFilter.h"

#include "basekit/diag/Assert.h"
#include "basekit/value/Function.h"
#include "basekit/value/Value.h"

#include <algorithm>

namespace ranged {

namespace {

constexpr int kEyeDisplay = 15;

using Overloads = std::vector<Function const *>;

/// What the first argument may be, over all overloads.
enum class Columns { kRealAlone = 0, kComplexAlone = 1, kBoth = 2, kNeither = 3 };

bool TakesFirst(Function const & function, val::ParameterType columns) {
  return !function.GetArgTypes().empty() && function.GetArgTypes().front().parameterType == columns;
}

Columns Classify(Overloads const & overloads) {
  auto const anyTakes = [&](val::ParameterType columns) {
    return std::any_of(overloads.begin(), overloads.end(),
                       [columns](Function const * function) { return TakesFirst(*function, columns); });
  };
  bool const takesReal = anyTakes(val::kRealArray);
  bool const takesComplex = anyTakes(val::kComplexArray);
  return takesReal ? (takesComplex ? Columns::kBoth : Columns::kRealAlone)
                   : (takesComplex ? Columns::kComplexAlone : Columns::kNeither);
}

/// Whether the first overload for a complex column gives a single real number.
bool ComplexGivesReal(Overloads const & overloads) {
  auto const found = std::find_if(overloads.begin(), overloads.end(),
                                  [](Function const * function) { return TakesFirst(*function, val::kComplexArray); });
  if (found != overloads.end())
    return (*found)->GetValueState().parameterType == val::kReal;
  KVRO_ASSERT(0);
  return false;
}

/// Displays that may hold complex traces; of these, 0 and 4 may hold real ones too.
bool MayHoldComplex(int display) {
  return display == 0 || display == 2 || display == 4 || display == 5 || display == 9 || display == 11;
}
bool MayHoldReal(int display) { return display == 0 || display == 4 || !MayHoldComplex(display); }

} // namespace

bool CategoryFits(AString const & category, rep::DisplayType displayType) {
  return displayType != kEyeDisplay || category.CompareNoCase(L"Eye Measurements") == 0;
}

bool FunctionFits(AString const & name, rep::DisplayType displayType) {
  if (displayType == kEyeDisplay)
    return name.CompareNoCase(L"EyeRiseTime") != 0 && name.CompareNoCase(L"EyeFallTime") != 0;
  Overloads overloads;
  Value::GetFunctions(overloads, name);
  Columns const columns = Classify(overloads);
  if (columns == Columns::kBoth)
    return !MayHoldComplex(displayType) || ComplexGivesReal(overloads);
  if (columns == Columns::kComplexAlone && MayHoldComplex(displayType))
    return ComplexGivesReal(overloads);
  return MayHoldReal(displayType) && columns == Columns::kRealAlone;
}

} // namespace ranged
