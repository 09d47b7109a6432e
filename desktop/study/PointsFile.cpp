#include "desktop/study/PointsFile.h"

#include "basekit/text/CsvLine.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/design/NumberWord.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

namespace desktop {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

class PointsReader {
public:
  explicit PointsReader(AString const & path) : m_path(path) { m_axis.file = path; }

  StudyAxis Read() {
    std::ifstream file(text::ToUtf8(m_path), std::ios::binary);
    std::error_code ignored; // then the file can't be opened either
    if (!file || std::filesystem::is_directory(text::ToUtf8(m_path), ignored))
      throw Error(ErrorKind::kUsage, L"--points " + m_path + L": can't be read (" +
                                         text::FromUtf8(std::strerror(file ? EISDIR : errno)) +
                                         L"); name a file of comma-separated values");
    for (std::string line; std::getline(file, line);)
      ReadLine(line);
    if (file.bad())
      Refuse(L"the file can't be read any further; check its disk");
    if (m_axis.names.empty())
      throw Error(ErrorKind::kUsage, m_path + L": is empty; its first line names variables, as in 'width,height'");
    if (m_axis.Rows() == 0)
      throw Error(ErrorKind::kUsage, m_path + L": has no points; write one line of numbers for each");
    return std::move(m_axis);
  }

private:
  void ReadLine(std::string & line) {
    ++m_line;
    std::string_view rest = line;
    if (m_line == 1 && rest.starts_with(kByteOrderMark))
      rest.remove_prefix(kByteOrderMark.size());
    if (rest.ends_with('\r'))
      rest.remove_suffix(1);
    std::size_t const first = rest.find_first_not_of(" \t");
    if (first == std::string_view::npos || rest[first] == '#')
      return;
    std::string problem;
    if (!text::SplitCsvLine(rest, ',', m_fields, problem))
      Refuse(text::FromUtf8(problem));
    if (m_axis.names.empty())
      ReadNames();
    else
      ReadPoint();
  }

  void ReadNames() {
    for (std::string const & field : m_fields) {
      AString const name = TextOf(field);
      if (name.empty())
        Refuse(L"a column has no name; the first line names variables");
      for (AString const & other : m_axis.names)
        if (AString::MatchNoCase(other, name))
          Refuse(L"the column '" + name + L"' is there twice; leave one out");
      m_axis.names.push_back(name);
      m_axis.places.push_back(Place());
      m_axis.columns.emplace_back();
    }
  }

  void ReadPoint() {
    if (m_fields.size() != m_axis.names.size())
      Refuse(AString::Format(L"the row has %lu values, and there are %lu columns; give one value for each",
                             m_fields.size(), m_axis.names.size()));
    if (m_axis.Rows() == kMostStudyPoints)
      Refuse(AString::Format(L"there are more than %lu points, which is what can be held in memory; split the file",
                             kMostStudyPoints));
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
      if (m_fields[i].empty())
        Refuse(L"the row has no value for " + m_axis.names[i] + L"; give one");
      m_axis.columns[i].push_back(ReadNumberWord(TextOf(m_fields[i]), Place() + L": " + m_axis.names[i]));
    }
    m_axis.lines.push_back(m_line);
  }

  AString TextOf(std::string const & field) const {
    AString wide;
    if (!text::FromUtf8Strict(field, wide) || field.find('\0') != std::string::npos)
      Refuse(L"the line is no UTF-8 text; save the file as comma-separated values in UTF-8");
    return wide;
  }

  AString Place() const { return m_path + AString::Format(L":%ld", m_line); }
  [[noreturn]] void Refuse(AString const & problem) const { throw Error(ErrorKind::kUsage, Place() + L": " + problem); }

  AString m_path;
  long m_line = 0;
  std::vector<std::string> m_fields;
  StudyAxis m_axis;
};

} // namespace

StudyAxis ReadPointsFile(AString const & path) { return PointsReader(path).Read(); }

} // namespace desktop
