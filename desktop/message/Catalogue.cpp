#include "desktop/message/Catalogue.h"

#include "basekit/message/KelvroMessage.h"

#include <algorithm>
#include <iterator>

namespace desktop {

namespace {

struct Entry {
  long number;
  wchar_t const * text;
};

// By rising numbers.
constexpr Entry kEntries[] = {
    {24527, L"There is an output variable of the name '%1' already. Choose another name."},
    {24528,
     L"The entry '%1' among the design's output variables is damaged and was left out. Enter the variable anew."},
    {24553, L"The output variable '%1' can't be deleted while another output variable refers to it. Change or delete "
            L"that one first."},
    {24554, L"There is no memory left to make the output variable '%1'. Close something and try again."},
    {24555, L"There is no output variable '%1'. Check the name, or make the variable first."},
    {24556, L"The output variable '%1' is in use and can't be deleted. Take it out of what uses it first."},
    {24557, L"'%1' is the name of a solved quantity and can't name an output variable. Choose another name."},
    {24558, L"'%1' can't name an output variable: it is empty, a number, a function or a variable. Use a new word."},
    {24559, L"The expression or name '%1' can't be evaluated. Check its spelling, and that what it names exists."},
    {24560, L"The output variable '%1' no longer made sense and now has the value 0. Give it a new expression."},
    {24575, L"'%1' can't name an output variable: a name is one single word. Take out blanks and operators."},
    {24576, L"The output variable '%1' would refer to itself, at once or through others. Break the circle."},
    {24583, L"An output variable's value was asked for without the name of a variable or of a solution. Give both."},
    {24584, L"There is no solution '%1'. Check the name against the list of solutions."},
    {24585, L"The output variable '%1' has no value here: a sweep of the solution lists no points. Give the sweep "
            L"points and solve again."},
    {24586,
     L"'%1' has a value in '%2' at which the solution holds no point. Ask at a point of the sweep, or solve this "
     L"one."},
    {24618, L"The output variable '%1' has no single real or complex value. Ask for a part of it that has one."},
    {24624, L"'%2' is another kind of quantity here (%1): what was pasted under this name (%3) is called '%4' now."},
    {24679, L"The design names an output variable '%1', which is no valid name; it was left out. Make it anew under "
            L"another name."},
    {24680, L"'%1' is solved already: nothing was to be done. Change the design or the variation to solve it again."},
    {24681, L"'%1' is being solved already. Wait until that is done."},
    {24729, L"The solution '%1' has no valid data for this variation. Solve it first."},
};

} // namespace

AString CatalogueText(long number) {
  auto const at = std::lower_bound(std::begin(kEntries), std::end(kEntries), number,
                                   [](Entry const & entry, long wanted) { return entry.number < wanted; });
  return at != std::end(kEntries) && at->number == number ? AString(at->text) : AString();
}

std::vector<long> CatalogueNumbers() {
  std::vector<long> numbers;
  for (Entry const & entry : kEntries)
    numbers.push_back(entry.number);
  return numbers;
}

AString ComposeMessage(KelvroMessage const & message) {
  auto const & arguments = message.Arguments().GetArgs();
  AString const text = CatalogueText(message.GetNumber());
  if (text.empty()) {
    AString line = AString::Format(L"Message %d", message.GetNumber());
    for (std::size_t i = 0; i < arguments.size(); ++i)
      line += (i == 0 ? AString(L": ") : AString(L", ")) + arguments[i];
    return line;
  }
  std::wstring line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    // One digit names the place: no message has more than nine arguments.
    std::size_t const place = text[i] == L'%' && i + 1 < text.size() && text[i + 1] >= L'1' && text[i + 1] <= L'9'
                                  ? static_cast<std::size_t>(text[i + 1] - L'0')
                                  : 0;
    if (place == 0) {
      line += text[i];
      continue;
    }
    if (place <= arguments.size())
      line += arguments[place - 1].View();
    ++i;
  }
  return line;
}

} // namespace desktop
