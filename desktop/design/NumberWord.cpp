#include "desktop/design/NumberWord.h"

#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/units/QuantityText.h"
#include "desktop/Error.h"

#include <cmath>
#include <cstdlib>

namespace desktop {
namespace {

[[noreturn]] void Refuse(AString const & where, AString const & word, AString const & problem) {
  throw Error(ErrorKind::kUsage, where + L": '" + word + L"' " + problem);
}

bool EndsInAmbiguousLetter(AString const & word) {
  std::size_t const size = word.size();
  if (size < 2 || !(word.EndsWith(L"m") || word.EndsWith(L"M") || word.EndsWith(L"F")))
    return false;
  wchar_t const before = word[size - 2];
  return (before >= L'0' && before <= L'9') || before == L'.' || before == L' ';
}

// Of a number that is beyond what can be held; 0 for any other.
wchar_t const * ProblemOfSize(AString const & word) {
  std::string const text = text::ToUtf8(word);
  char * end = nullptr;
  double const value = std::strtod(text.c_str(), &end);
  bool const hasDigits = end != text.c_str() && text.find_first_of("123456789") < text.find_first_of("eE");
  bool const isNumber = hasDigits && text.find_first_of("xXnN") >= static_cast<std::size_t>(end - text.c_str());
  if (isNumber && std::isinf(value))
    return L"is too large; numbers go up to 1.7e308";
  return isNumber && value == 0 ? L"is too small; numbers go down to 4.9e-324, and 0" : nullptr;
}

} // namespace

double ReadNumberWord(AString const & word, AString const & where) {
  AString const trimmed = word.Trimmed();
  if (EndsInAmbiguousLetter(trimmed))
    Refuse(where, word,
           L"can be read in two ways (m: milli or metre, M: mega or milli, F: farad or femto); "
           L"write the exponent, as in 1e-3");
  if (wchar_t const * const problem = ProblemOfSize(trimmed))
    Refuse(where, word, problem);
  val::Quantity quantity;
  if (!val::ParseQuantity(trimmed.View(), quantity) || quantity.isComplex)
    Refuse(where, word, L"is no number; write one such as 0.95, 1e-12 or 2.2p");
  return quantity.real;
}

AString PlainNumber(double value) { return text::FromUtf8(text::ShortestReal(value == 0 ? 0.0 : value)); }

} // namespace desktop
