#include "desktop/study/VaryWord.h"

#include "desktop/Error.h"
#include "desktop/design/NumberWord.h"
#include "desktop/study/DecimalRange.h"

#include <algorithm>
#include <set>
#include <utility>

namespace desktop {
namespace {

[[noreturn]] void Refuse(AString const & where, AString const & problem) {
  throw Error(ErrorKind::kUsage, where + L": " + problem);
}

[[noreturn]] void RefuseTooMany(AString const & where, double points) {
  Refuse(where, TooManyPoints(points) + L"; take larger steps or fewer variables at a time");
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

/// One variable of a word, with the pieces between its commas.
struct Part {
  AString name;
  std::vector<AString> values;

  AString Where() const { return L"--vary " + name; }
};

std::vector<Part> PartsOf(AString const & word) {
  std::vector<Part> parts;
  for (AString const & piece : Split(word, L',')) {
    if (!parts.empty() && piece.find(L'=') == AString::npos) {
      parts.back().values.push_back(piece);
      continue;
    }
    auto const [name, value] = SplitAssignment(piece, L"--vary");
    for (Part const & other : parts)
      if (AString::MatchNoCase(other.name, name))
        Refuse(other.Where(), L"is given twice in one word; give it once");
    parts.push_back({name, {value}});
  }
  return parts;
}

std::vector<double> ReadSteps(AString const & where, std::vector<AString> const & pieces) {
  double const start = ReadNumberWord(pieces[0], where);
  double const stop = ReadNumberWord(pieces[1], where);
  double const step = ReadNumberWord(pieces[2], where);
  if (!(step > 0))
    Refuse(where, L"the step " + pieces[2] + L" is not above zero; write the range upwards, as in 0.9:1.1:0.05");
  if (stop < start)
    Refuse(where, L"the range is empty, as it ends at " + pieces[1] + L", before its start; swap the two");
  DecimalRange const range(start, stop, step);
  if (!(range.Count() <= static_cast<double>(kMostStudyPoints)))
    RefuseTooMany(where, range.Count());
  std::vector<double> values;
  for (long long i = 0; i < static_cast<long long>(range.Count()); ++i) {
    values.push_back(range.At(i));
    if (values.size() > 1 && !(values.back() > values[values.size() - 2]))
      Refuse(where, L"the step " + pieces[2] + L" is too small to tell values apart; take a larger one");
  }
  return values;
}

std::vector<double> ReadList(AString const & where, std::vector<AString> const & pieces) {
  if (pieces.size() > kMostStudyPoints)
    RefuseTooMany(where, static_cast<double>(pieces.size()));
  std::vector<double> values;
  for (AString const & piece : pieces)
    values.push_back(ReadNumberWord(piece, where));
  return values;
}

SampledRange ReadSampled(Part const & part, std::vector<AString> const & pieces) {
  SampledRange const range{part.name, ReadNumberWord(pieces[0], part.Where()), ReadNumberWord(pieces[1], part.Where())};
  if (!(range.from < range.to))
    Refuse(part.Where(), L"the range " + part.values.front() + L" is empty; write the smaller number first");
  return range;
}

void ReadPart(Part const & part, VaryWord & word) {
  bool const isRange = std::any_of(part.values.begin(), part.values.end(),
                                   [](AString const & value) { return value.find(L':') != AString::npos; });
  if (isRange && part.values.size() > 1)
    Refuse(part.Where(), L"a range and single values can't be mixed; write the one or the other");
  std::vector<AString> const pieces = Split(part.values.front(), L':');
  if (pieces.size() > 3)
    Refuse(part.Where(), L"a range has three numbers; write " + part.name + L"=A:B:STEP");
  if (pieces.size() == 2) {
    word.ranges.push_back(ReadSampled(part, pieces));
    return;
  }
  word.axis.names.push_back(part.name);
  word.axis.places.push_back(part.Where());
  word.axis.columns.push_back(isRange ? ReadSteps(part.Where(), pieces) : ReadList(part.Where(), part.values));
}

void CheckLengths(StudyAxis const & axis) {
  for (std::size_t i = 1; i < axis.names.size(); ++i)
    if (axis.columns[i].size() != axis.Rows())
      Refuse(axis.places[i], AString::Format(L"has %lu values and %s, which it runs together with, has %lu; give "
                                             L"equally many",
                                             axis.columns[i].size(), axis.names[0], axis.Rows()));
}

void CheckRepeated(StudyAxis const & axis, std::vector<Part> const & parts) {
  std::set<std::vector<double>> seen;
  for (std::size_t row = 0; row < axis.Rows(); ++row) {
    std::vector<double> values;
    for (auto const & column : axis.columns)
      values.push_back(column[row]);
    if (!seen.insert(values).second)
      Refuse(axis.places[0], parts.size() > 1
                                 ? AString::Format(L"row %lu of the word is given twice; give it once", row + 1)
                                 : L"the value " + parts[0].values[row] + L" is given twice; give it once");
  }
}

} // namespace

std::pair<AString, AString> SplitAssignment(AString const & word, AString const & where) {
  std::size_t const at = word.find(L'=');
  if (at == AString::npos)
    Refuse(where, L"'" + word + L"' has no '='; write NAME=" + (where.EndsWith(L"--rename") ? L"NEWNAME" : L"VALUE"));
  std::pair<AString, AString> const parts(word.substr(0, at).Trimmed(), word.substr(at + 1).Trimmed());
  if (parts.first.empty() || parts.second.empty())
    Refuse(where, L"'" + word + L"' lacks a name or a value; write NAME=VALUE");
  return parts;
}

VaryWord ReadVaryWord(AString const & word) {
  std::vector<Part> const parts = PartsOf(word);
  VaryWord read;
  for (Part const & part : parts)
    ReadPart(part, read);
  if (!read.ranges.empty() && !read.axis.names.empty())
    Refuse(read.axis.places[0], L"runs together with " + read.ranges[0].name +
                                    L", a range A:B without a step; give both a step, or neither");
  CheckLengths(read.axis);
  // The values of a range are told apart already.
  bool const isList = std::any_of(parts.begin(), parts.end(), [](Part const & part) { return part.values.size() > 1; });
  if (isList)
    CheckRepeated(read.axis, parts);
  return read;
}

} // namespace desktop
