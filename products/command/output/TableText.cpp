// Numbers in rows and columns, parted by commas or blanks.

#include "basekit/text/CsvLine.h"
#include "basekit/text/NumberText.h"
#include "products/command/output/OutputText.h"
#include "products/command/output/TakenValues.h"
#include "products/command/source/SolverFile.h"
#include "products/command/source/SourceError.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace command {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kMostShown = 40;

std::string Shown(std::string const & field) {
  return "'" + (field.size() > kMostShown ? field.substr(0, kMostShown) + "..." : field) + "'";
}

void SkipDigits(std::string_view & text) {
  text.remove_prefix(std::min(text.find_first_not_of("0123456789"), text.size()));
}

void SkipSign(std::string_view & text) {
  if (text.starts_with('+') || text.starts_with('-'))
    text.remove_prefix(1);
}

// Sign, digits, point, digits, exponent.
bool LooksLikeNumber(std::string_view text) {
  SkipSign(text);
  std::size_t const before = text.size();
  SkipDigits(text);
  std::size_t digits = before - text.size();
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    std::size_t const behind = text.size();
    SkipDigits(text);
    digits += behind - text.size();
  }
  if (digits == 0 || text.empty())
    return digits > 0;
  if (text.front() != 'e' && text.front() != 'E')
    return false;
  text.remove_prefix(1);
  SkipSign(text);
  bool const hasExponent = !text.empty();
  SkipDigits(text);
  return hasExponent && text.empty();
}

// One that looks like a number can't be held.
std::string WhyNoNumber(std::string const & field) {
  return LooksLikeNumber(field) ? " is too large or too small a number to be held" : " is no number";
}

class TableReader {
public:
  TableReader(OutputLine const & output, std::string_view text)
      : m_output(output), m_rest(text), m_values(output.quantities.size()) {
    if (m_rest.starts_with(kByteOrderMark))
      m_rest.remove_prefix(kByteOrderMark.size());
  }

  std::vector<desktop::QuantityValues> Read() {
    while (!m_rest.empty())
      ReadLine(NextLine());
    if (m_places.empty() && m_output.hasHeader)
      throw SourceError(m_output.Name() + ": is empty; its first line is meant to name columns");
    std::vector<desktop::QuantityValues> taken;
    for (std::size_t i = 0; i < m_values.size(); ++i)
      taken.push_back(TakeValues(m_output, m_output.quantities[i], std::move(m_values[i])));
    return taken;
  }

private:
  std::string_view NextLine() {
    ++m_line;
    std::size_t const end = std::min(m_rest.find('\n'), m_rest.size());
    m_isLineEnded = end < m_rest.size();
    std::string_view line = m_rest.substr(0, end);
    m_rest.remove_prefix(std::min(end + 1, m_rest.size()));
    if (line.ends_with('\r'))
      line.remove_suffix(1);
    return line;
  }

  void ReadLine(std::string_view line) {
    std::size_t const first = line.find_first_not_of(" \t");
    if (first == std::string_view::npos || line[first] == '#')
      return;
    Split(line);
    if (m_places.empty()) {
      FindColumns();
      if (m_output.hasHeader)
        return;
    }
    if (m_fields.size() != m_columns)
      Refuse("there are " + std::to_string(m_fields.size()) + " values, and " + std::to_string(m_columns) +
             " columns; the file may be cut");
    for (std::size_t i = 0; i < m_places.size(); ++i)
      TakeNumber(m_output.quantities[i], m_fields[m_places[i]], m_values[i]);
    // Half of a number may well look like a whole one.
    if (!m_isLineEnded)
      Refuse("the last line has no line end, so that its numbers may be cut; have the program end it");
  }

  void Split(std::string_view line) {
    std::string problem;
    if (m_output.form == OutputLine::Form::kCsv) {
      if (!text::SplitCsvLine(line, ',', m_fields, problem))
        Refuse(problem);
      return;
    }
    m_fields.clear();
    for (std::size_t at = line.find_first_not_of(" \t"); at != std::string_view::npos;) {
      std::size_t const end = std::min(line.find_first_of(" \t", at), line.size());
      m_fields.emplace_back(line.substr(at, end - at));
      at = line.find_first_not_of(" \t", end);
    }
  }

  void FindColumns() {
    m_columns = m_fields.size();
    for (QuantityLine const & quantity : m_output.quantities)
      m_places.push_back(m_output.hasHeader ? ColumnOfName(quantity) : ColumnOfNumber(quantity));
  }

  std::size_t ColumnOfName(QuantityLine const & quantity) const {
    auto const found = std::find(m_fields.begin(), m_fields.end(), quantity.where);
    if (found != m_fields.end()) {
      if (std::find(found + 1, m_fields.end(), quantity.where) != m_fields.end())
        Refuse(quantity.name + ": two columns are called '" + quantity.where + "'; give one another name");
      return static_cast<std::size_t>(found - m_fields.begin());
    }
    std::string known;
    for (std::string const & field : m_fields)
      known += (known.empty() ? "" : ", ") + field;
    Refuse(quantity.name + ": there is no column '" + quantity.where + "'; there are " + Shown(known) + HintOfComma());
  }

  // Of a table that is parted in another way.
  std::string HintOfComma() const {
    bool const isOther = m_output.form == OutputLine::Form::kCsv && m_fields.size() == 1 &&
                         m_fields.front().find_first_of(";\t") != std::string::npos;
    return isOther ? "; columns of a CSV file are parted by commas" : "";
  }

  std::size_t ColumnOfNumber(QuantityLine const & quantity) const {
    std::size_t const number = std::stoul(quantity.where);
    if (number > m_columns)
      Refuse(quantity.name + ": there is no column " + quantity.where + "; there are " + std::to_string(m_columns));
    return number - 1;
  }

  void TakeNumber(QuantityLine const & quantity, std::string const & field, std::vector<double> & values) const {
    double value = 0.0;
    if (!text::ParseReal(std::string_view(field), value) || field.starts_with("+-"))
      Refuse(quantity.name + ": " + (field.empty() ? "there is no number" : Shown(field) + WhyNoNumber(field)) +
             HintOfComma());
    if (!std::isfinite(value))
      Refuse(quantity.name + ": " + Shown(field) + " is not finite");
    if (values.size() == kMostNumbers)
      Refuse(quantity.name + ": there are more than " + std::to_string(kMostNumbers) + " values; write fewer");
    values.push_back(value);
  }

  [[noreturn]] void Refuse(std::string const & problem) const { throw SourceError(m_output.Name(), m_line, problem); }

  OutputLine const & m_output;
  std::string_view m_rest;
  int m_line = 0;
  bool m_isLineEnded = true;
  std::size_t m_columns = 0;
  std::vector<std::size_t> m_places; ///< of the quantities among the columns
  std::vector<std::string> m_fields;
  std::vector<std::vector<double>> m_values;
};

} // namespace

std::vector<desktop::QuantityValues> ReadTableText(OutputLine const & output, std::string const & text) {
  return TableReader(output, text).Read();
}

} // namespace command
