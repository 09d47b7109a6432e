#include "apps/solvedesk/report/TraceFile.h"

#include "apps/solvedesk/console/Console.h"
#include "basekit/text/CsvLine.h"
#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/units/QuantityText.h"
#include "desktop/Error.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace solvedesk {
namespace {

using desktop::Error;
using desktop::ErrorKind;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool ReadNumber(std::string const & field, double & number) {
  if (text::ParseReal(field, number))
    return true;
  AString wide;
  val::Quantity quantity;
  if (!text::FromUtf8Strict(field, wide) || !val::ParseQuantity(wide.View(), quantity) || quantity.isComplex)
    return false;
  number = quantity.real;
  return true;
}

class TraceReader {
public:
  explicit TraceReader(AString const & path) : m_path(path) {}

  TraceColumns Read() {
    std::ifstream file(text::ToUtf8(m_path), std::ios::binary);
    std::error_code ignored; // then the file can't be opened either
    if (!file || std::filesystem::is_directory(text::ToUtf8(m_path), ignored))
      throw Error(ErrorKind::kUsage, L"--csv " + m_path + L": can't be read (" +
                                         text::FromUtf8(std::strerror(file ? EISDIR : errno)) +
                                         L"); name a file with columns x,y or x,re,im");
    for (std::string line; std::getline(file, line);)
      ReadLine(line);
    if (file.bad())
      Refuse(L"the file can't be read any further; check its disk");
    if (m_trace.Rows() == 0)
      throw Error(ErrorKind::kUsage,
                  m_path + L": has no samples; write one line x,y for each, or x,re,im for complex ones");
    return std::move(m_trace);
  }

private:
  void ReadLine(std::string_view line) {
    ++m_line;
    if (m_line == 1 && line.starts_with(kByteOrderMark))
      line.remove_prefix(kByteOrderMark.size());
    if (line.ends_with('\r'))
      line.remove_suffix(1);
    std::size_t const first = line.find_first_not_of(" \t");
    if (first == std::string_view::npos || line[first] == '#')
      return;
    std::string problem;
    if (!text::SplitCsvLine(line, ',', m_fields, problem))
      Refuse(text::FromUtf8(problem));
    CheckColumns();
    if (m_columns == 0 && !HasNumber())
      ReadNames();
    else
      ReadSample();
  }

  /// A line with one number is a sample, so that a slip in its other fields is told.
  bool HasNumber() const {
    double number = 0.0;
    return std::any_of(m_fields.begin(), m_fields.end(),
                       [&number](std::string const & field) { return ReadNumber(field, number); });
  }

  void CheckColumns() {
    std::size_t const expected = m_columns != 0 ? m_columns : m_fields.size();
    if (expected < 2 || expected > 3)
      Refuse(L"the line has " + text::FromUtf8(Count(static_cast<long long>(expected), "column")) +
             L"; write x,y or x,re,im, separated by commas");
    if (m_fields.size() != expected)
      Refuse(AString::Format(L"the line has %lu values, and the lines before have %lu; give one value for each column",
                             m_fields.size(), expected));
  }

  void ReadNames() {
    m_columns = m_fields.size();
    for (std::string const & field : m_fields) {
      AString wide;
      if (!text::FromUtf8Strict(field, wide))
        Refuse(L"the line is no UTF-8 text; save the file as comma-separated values in UTF-8");
      m_trace.names.push_back(field);
    }
  }

  void ReadSample() {
    m_columns = m_fields.size();
    double const x = NumberAt(0);
    double const y = NumberAt(1);
    if (m_columns == 3)
      m_trace.complex.emplace_back(y, NumberAt(2));
    else
      m_trace.y.push_back(y);
    m_trace.x.push_back(x);
    bool const isHole =
        !std::isfinite(x) || !std::isfinite(y) || (m_columns == 3 && !std::isfinite(m_trace.complex.back().imag()));
    if (isHole)
      return;
    if (x < m_last && m_trace.backwards == 0)
      m_trace.backwards = m_line;
    m_last = x;
  }

  double NumberAt(std::size_t column) const {
    double number = 0.0;
    if (!ReadNumber(m_fields[column], number))
      RefuseField(column);
    if (AString const text = text::FromUtf8(m_fields[column]); val::IsMetreOrThousandth(text.View()))
      Refuse(PlaceOf(column) + L": '" + text + L"' " + AmbiguousMetre(text));
    return number;
  }

  AString PlaceOf(std::size_t column) const {
    AString const place = AString::Format(L"column %lu", column + 1);
    return m_trace.names.empty() ? place : place + L" (" + text::FromUtf8(m_trace.names[column]) + L")";
  }

  [[noreturn]] void RefuseField(std::size_t column) const {
    AString const place = PlaceOf(column);
    if (m_fields[column].empty())
      Refuse(place + L" is empty; write nan where there is no value");
    Refuse(place + L": '" + text::FromUtf8(m_fields[column]) +
           L"' is no number; write one such as 1.5, 2e-9 or 2ns, or nan where there is no value");
  }

  [[noreturn]] void Refuse(AString const & problem) const {
    throw Error(ErrorKind::kUsage, m_path + AString::Format(L":%ld: ", m_line) + problem);
  }

  AString m_path;
  long m_line = 0;
  std::size_t m_columns = 0;
  double m_last = -HUGE_VAL;
  std::vector<std::string> m_fields;
  TraceColumns m_trace;
};

} // namespace

AString AmbiguousMetre(AString const & text) {
  val::Quantity metres;
  val::ParseQuantity(text.View(), metres);
  return L"may be metres or thousandths; write " + val::QuantityText({metres.real / 1000.0}) +
         L" for thousandths, or " + text.substr(0, text.rfind(L'm')).Trimmed() + L"meter";
}

TraceColumns ReadTraceFile(AString const & path) { return TraceReader(path).Read(); }

} // namespace solvedesk
