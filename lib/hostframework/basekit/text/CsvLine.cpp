#include "basekit/text/CsvLine.h"

namespace text {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

/// One walk along a line.
class FieldReader {
public:
  FieldReader(std::string_view line, char separator) : m_line(line), m_separator(separator) {}

  // False with a problem; the place then stands at a separator or at the end.
  bool Next(std::string & field, std::string & problem) {
    field.clear();
    SkipBlanks();
    bool const isQuoted = m_at < m_line.size() && m_line[m_at] == '"';
    return isQuoted ? ReadQuoted(field, problem) : ReadPlain(field, problem);
  }

  bool TakeSeparator() {
    if (m_at >= m_line.size())
      return false;
    ++m_at;
    return true;
  }

private:
  bool IsSeparator() const { return m_line[m_at] == m_separator; }

  void SkipBlanks() {
    while (m_at < m_line.size() && !IsSeparator() && IsBlank(m_line[m_at]))
      ++m_at;
  }

  bool ReadQuoted(std::string & field, std::string & problem) {
    for (++m_at; m_at < m_line.size(); ++m_at) {
      bool const isQuote = m_line[m_at] == '"';
      bool const isDouble = isQuote && m_at + 1 < m_line.size() && m_line[m_at + 1] == '"';
      if (isQuote && !isDouble)
        break;
      field += m_line[m_at];
      m_at += isDouble ? 1 : 0;
    }
    if (m_at >= m_line.size()) {
      problem = "a quote is not closed on its line";
      return false;
    }
    ++m_at;
    SkipBlanks();
    if (m_at < m_line.size() && !IsSeparator())
      problem = "text stands behind a closing quote";
    return problem.empty();
  }

  bool ReadPlain(std::string & field, std::string & problem) {
    for (; m_at < m_line.size() && !IsSeparator(); ++m_at)
      field += m_line[m_at];
    while (!field.empty() && IsBlank(field.back()))
      field.pop_back();
    if (field.find('"') != std::string::npos)
      problem = "a quote stands inside a field; put the whole field in quotes";
    return problem.empty();
  }

  std::string_view m_line;
  char m_separator;
  std::size_t m_at = 0;
};

} // namespace

bool SplitCsvLine(std::string_view line, char separator, std::vector<std::string> & fields, std::string & problem) {
  FieldReader reader(line, separator);
  fields.clear();
  problem.clear();
  do {
    if (!reader.Next(fields.emplace_back(), problem))
      return false;
  } while (reader.TakeSeparator());
  return true;
}

} // namespace text
