#include "apps/solvedesk/transfer/ExportIndex.h"

#include "basekit/text/Utf8.h"
#include "desktop/Error.h"

#include <fstream>

namespace solvedesk {
namespace {

char const * const kHeader = "file,setup,variation";

std::string Quoted(std::string const & text) {
  std::string quoted = "\"";
  for (char const c : text)
    quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

// The first field, with or without its quotes: names of files hold neither quotes nor commas.
std::string FileOf(std::string const & line) {
  std::string file = line.substr(0, line.find(','));
  std::erase(file, '"');
  return file;
}

bool ReadLine(std::istream & stream, std::string & line) {
  if (!std::getline(stream, line))
    return false;
  if (!line.empty() && line.back() == '\r')
    line.pop_back();
  return true;
}

} // namespace

ExportIndex::ExportIndex(std::filesystem::path const & file, bool keepsRows) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(file, ignored))
    return;
  std::ifstream stream(file, std::ios::binary);
  std::string line;
  if (!ReadLine(stream, line) || line != kHeader)
    throw desktop::Error(desktop::ErrorKind::kStorage,
                         text::FromUtf8(file.string() + ": is not the index of an export, whose first line is `" +
                                        kHeader + "`; move it away or name another folder"));
  while (keepsRows && ReadLine(stream, line))
    if (!line.empty())
      Enter(FileOf(line), line);
}

void ExportIndex::Enter(std::string const & file, std::string const & line) {
  auto const [place, isNew] = m_places.emplace(file, m_rows.size());
  if (isNew)
    m_rows.push_back(line);
  else
    m_rows[place->second] = line;
}

void ExportIndex::Add(std::string const & file, std::string const & setup, std::string const & variation) {
  Enter(file, Quoted(file) + "," + Quoted(setup) + "," + Quoted(variation));
}

std::string ExportIndex::Text() const {
  std::string text = std::string(kHeader) + "\n";
  for (std::string const & line : m_rows)
    text += line + "\n";
  return text;
}

} // namespace solvedesk
