#include "products/rfcircuit/engine/netlist/IncludeReader.h"

#include "products/rfcircuit/engine/netlist/CaseFolding.h"
#include "products/rfcircuit/engine/netlist/LineCursor.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"

#include <algorithm>
#include <optional>
#include <system_error>

namespace rf {
namespace {

constexpr std::size_t DEEPEST_INCLUDE = 32;
constexpr int MOST_INCLUDES = 10000;

// The same file under two names must be seen as one.
std::filesystem::path Identity(std::filesystem::path const & path) {
  std::error_code code;
  auto const canonical = std::filesystem::weakly_canonical(path, code);
  return code ? path.lexically_normal() : canonical;
}

std::string Circle(std::vector<std::filesystem::path> const & open, std::filesystem::path const & again) {
  std::string text;
  for (auto file = std::find(open.begin(), open.end(), again); file != open.end(); ++file)
    text += file->filename().string() + " -> ";
  return text + again.filename().string();
}

std::string FirstWord(LogicalLine const & line) { return Folded(LineCursor(line).Word()); }

} // namespace

std::string IncludeReader::FeedMain(std::string const & text, std::filesystem::path const & path) {
  NoteFile(path.string());
  m_BytesLeft -= std::min<std::uintmax_t>(m_BytesLeft, text.size());
  Feed(text, path, 1);
  return FirstLine(text);
}

void IncludeReader::NoteFile(std::string const & name) {
  if (std::find(m_Files.begin(), m_Files.end(), name) == m_Files.end())
    m_Files.push_back(name);
}

void IncludeReader::Feed(std::string const & text, std::filesystem::path const & path, int skipLines) {
  m_Open.push_back(Identity(path));
  std::optional<SourcePosition> control;
  for (LogicalLine const & line : SplitIntoStatements(text, path.string(), skipLines)) {
    std::string const word = FirstWord(line);
    if (word == ".end")
      break;
    if (control) {
      if (word == ".endc")
        control.reset();
      continue;
    }
    if (word == ".control")
      control = line.Start();
    if (word == ".include" || word == ".inc")
      Include(line, path);
    else
      m_Receiver(line, m_Open.size() == 1);
  }
  if (control)
    throw NetlistError(*control, ".control", "the script is not closed", "end it with .endc");
  m_Open.pop_back();
}

void IncludeReader::Include(LogicalLine const & line, std::filesystem::path const & includer) {
  LineCursor cursor(line);
  cursor.Word();
  std::string name = cursor.Rest();
  while (!name.empty() && IsBlank(name.back()))
    name.pop_back();
  if (name.size() >= 2 && (name.front() == '"' || name.front() == '\'') && name.back() == name.front())
    name = name.substr(1, name.size() - 2);
  if (name.empty())
    throw NetlistError(line.Start(), ".include", "the file's name is missing", "write '.include \"FILE\"'");
  auto const path = (includer.parent_path() / name).lexically_normal();
  auto const identity = Identity(path);
  if (std::find(m_Open.begin(), m_Open.end(), identity) != m_Open.end())
    throw NetlistError(line.Start(), ".include '" + name + "'", "the file includes itself: " + Circle(m_Open, identity),
                       "break the circle");
  if (m_Open.size() > DEEPEST_INCLUDE || ++m_Includes > MOST_INCLUDES)
    throw NetlistError(line.Start(), ".include '" + name + "'", "too many files are included, or nested too deep",
                       "at most 32 levels and 10000 files are read");
  std::string const text = ReadSourceText(path, line.Start(), m_BytesLeft);
  m_BytesLeft -= std::min<std::uintmax_t>(m_BytesLeft, text.size());
  NoteFile(path.string());
  Feed(text, path, 0);
}

} // namespace rf
