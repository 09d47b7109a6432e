#include "apps/solvedesk/VaryGrid.h"

#include "apps/solvedesk/Console.h"
#include "apps/solvedesk/DecimalRange.h"
#include "apps/solvedesk/NumberWord.h"
#include "basekit/value/Variable.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"

#include <algorithm>

namespace solvedesk {
namespace {

[[noreturn]] void Refuse(AString const & where, AString const & problem) {
  throw desktop::Error(desktop::ErrorKind::kUsage, where + L": " + problem);
}

// The pieces between the separators, empty ones included.
std::vector<AString> Split(AString const & text, wchar_t separator) {
  std::vector<AString> pieces;
  std::size_t from = 0;
  for (std::size_t at = text.find(separator); at != AString::npos; at = text.find(separator, from)) {
    pieces.push_back(text.substr(from, at - from));
    from = at + 1;
  }
  pieces.push_back(text.substr(from));
  return pieces;
}

[[noreturn]] void RefuseTooMany(AString const & where) {
  Refuse(where, L"asks for more than 10000000 points; take larger steps or fewer variables at a time");
}

} // namespace

std::pair<AString, AString> SplitAssignment(AString const & word, AString const & where) {
  std::size_t const at = word.find(L'=');
  if (at == AString::npos)
    Refuse(where, L"'" + word + L"' has no '='; write NAME=VALUE");
  std::pair<AString, AString> const parts(word.substr(0, at).Trimmed(), word.substr(at + 1).Trimmed());
  if (parts.first.empty() || parts.second.empty())
    Refuse(where, L"'" + word + L"' lacks a name or a value; write NAME=VALUE");
  return parts;
}

AString KnownVariable(desktop::Design const & design, AString const & name, AString const & where) {
  if (Variable const * const variable = design.FindVariable(name))
    return variable->GetName();
  AString known;
  for (Variable const * variable : design.GetVariables())
    known += (known.empty() ? L"" : L", ") + variable->GetName();
  Refuse(where, L"the design has no variable '" + name + L"'; " +
                    (known.empty() ? AString(L"it has none at all") : L"it has: " + known));
}

VaryGrid::VaryGrid(std::vector<std::string> const & words) {
  for (std::string const & word : words) {
    Axis axis = ReadAxis(ArgumentText(word));
    bool const isTwice = std::any_of(m_axes.begin(), m_axes.end(),
                                     [&](Axis const & other) { return AString::MatchNoCase(other.name, axis.name); });
    if (isTwice)
      Refuse(L"--vary " + axis.name, L"is given twice; give all its values in one");
    m_size *= axis.values.size();
    if (m_size > kMostPoints)
      RefuseTooMany(L"--vary");
    m_axes.push_back(std::move(axis));
  }
}

VaryGrid::Axis VaryGrid::ReadAxis(AString const & word) {
  auto const [name, text] = SplitAssignment(word, L"--vary");
  std::vector<AString> const range = Split(text, L':');
  if (range.size() > 1)
    return {name, ReadRange(name, range)};
  return {name, ReadList(name, Split(text, L','))};
}

std::vector<double> VaryGrid::ReadRange(AString const & name, std::vector<AString> const & pieces) {
  AString const where = L"--vary " + name;
  if (pieces.size() != 3)
    Refuse(where, L"a range has three numbers; write " + name + L"=A:B:STEP");
  double const start = ReadNumberWord(pieces[0], where);
  double const stop = ReadNumberWord(pieces[1], where);
  double const step = ReadNumberWord(pieces[2], where);
  if (!(step > 0))
    Refuse(where, L"the step " + pieces[2] + L" is not above zero; write the range upwards, as in 0.9:1.1:0.05");
  if (stop < start)
    Refuse(where, L"the range is empty, as it ends at " + pieces[1] + L", before its start; swap the two");
  DecimalRange const range(start, stop, step);
  if (!(range.Count() <= static_cast<double>(kMostPoints)))
    RefuseTooMany(where);
  std::vector<double> values;
  for (long long i = 0; i < static_cast<long long>(range.Count()); ++i) {
    values.push_back(range.At(i));
    if (values.size() > 1 && !(values.back() > values[values.size() - 2]))
      Refuse(where, L"the step " + pieces[2] + L" is too small to tell values apart; take a larger one");
  }
  return values;
}

std::vector<double> VaryGrid::ReadList(AString const & name, std::vector<AString> const & pieces) {
  AString const where = L"--vary " + name;
  std::vector<double> values;
  for (AString const & piece : pieces) {
    double const value = ReadNumberWord(piece, where);
    if (std::find(values.begin(), values.end(), value) != values.end())
      Refuse(where, L"the value " + piece + L" is given twice; give it once");
    values.push_back(value);
    if (values.size() > kMostPoints)
      RefuseTooMany(where);
  }
  return values;
}

void VaryGrid::ResolveNames(desktop::Design const & design) {
  for (Axis & axis : m_axes)
    axis.name = KnownVariable(design, axis.name, L"--vary " + axis.name);
}

VaryGrid::Point VaryGrid::At(std::size_t index) const {
  Point point(m_axes.size());
  for (std::size_t i = m_axes.size(); i-- > 0; index /= m_axes[i].values.size())
    point[i] = {m_axes[i].name, PlainNumber(m_axes[i].values[index % m_axes[i].values.size()])};
  return point;
}

} // namespace solvedesk
