#include "products/rfcircuit/engine/netlist/SourceText.h"

#include "products/rfcircuit/engine/netlist/CaseFolding.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>

namespace rf {
namespace {

constexpr char BYTE_ORDER_MARK[] = "\xEF\xBB\xBF";

/** Where the blame for a file goes: the line that includes it, or else the file itself. */
class Blame {
public:
  Blame(std::string file, SourcePosition const & includedFrom) : m_File(std::move(file)), m_From(includedFrom) {}

  [[noreturn]] void Refuse(std::string const & message, std::string const & remedy) const {
    if (m_From.file)
      throw NetlistError(m_From, ".include '" + m_File + "'", message, remedy);
    throw NetlistError({std::make_shared<std::string const>(m_File), 0}, "netlist", message, remedy);
  }

private:
  std::string m_File;
  SourcePosition m_From;
};

std::string SizeInWords(std::uintmax_t bytes) { return std::to_string(bytes) + " bytes"; }

std::string WithoutComment(std::string const & line) {
  char quote = '\0';
  for (std::size_t i = 0; i < line.size(); ++i) {
    char const c = line[i];
    if (quote != '\0') {
      quote = c == quote ? '\0' : quote;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == ';' || (c == '$' && (i == 0 || IsBlank(line[i - 1])))) {
      return line.substr(0, i);
    }
  }
  return line;
}

std::string Trimmed(std::string const & text) {
  std::size_t start = 0;
  std::size_t end = text.size();
  while (start < end && IsBlank(text[start]))
    ++start;
  while (end > start && IsBlank(text[end - 1]))
    --end;
  return text.substr(start, end - start);
}

// Line ends: \n, \r\n or \r alone.
std::string TakeLine(std::string const & text, std::size_t & position) {
  std::size_t const end = std::min(text.find_first_of("\r\n", position), text.size());
  std::string const line = text.substr(position, end - position);
  position = end + 1;
  if (end + 1 < text.size() && text[end] == '\r' && text[end + 1] == '\n')
    ++position;
  return line;
}

} // namespace

std::string ReadSourceText(std::filesystem::path const & path, SourcePosition const & includedFrom,
                           std::uintmax_t largest) {
  Blame const blame(path.string(), includedFrom);
  std::error_code code;
  auto const status = std::filesystem::status(path, code);
  if (status.type() == std::filesystem::file_type::not_found)
    blame.Refuse("there is no such file", "check the path");
  if (code)
    blame.Refuse("can't be reached: " + code.message(), "check the path and the permissions of its folders");
  if (status.type() != std::filesystem::file_type::regular)
    blame.Refuse("is not a file", "name a netlist file");
  auto const size = std::filesystem::file_size(path, code);
  if (!code && size > largest)
    blame.Refuse("is too large: " + SizeInWords(size) + ", " + SizeInWords(largest) + " are left of the " +
                     SizeInWords(LARGEST_NETLIST_IN_BYTES) + " that a netlist may have",
                 "is this a netlist? If so, use subcircuits");
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  std::string text(code ? 0 : static_cast<std::size_t>(size), '\0');
  if (!file || !file.read(text.data(), static_cast<std::streamsize>(text.size())))
    blame.Refuse(std::string("can't be read: ") + (errno ? std::strerror(errno) : "it changed while it was read"),
                 "check its permissions");
  if (text.find('\0') != std::string::npos)
    blame.Refuse("is not text but a binary file", "give a netlist in plain text");
  if (text.rfind(BYTE_ORDER_MARK, 0) == 0)
    text.erase(0, std::strlen(BYTE_ORDER_MARK));
  return text;
}

std::string FirstLine(std::string const & text) {
  std::size_t position = 0;
  return Trimmed(TakeLine(text, position));
}

std::vector<LogicalLine> SplitIntoStatements(std::string const & text, std::string const & fileName, int skipLines) {
  auto const file = std::make_shared<std::string const>(fileName);
  std::vector<LogicalLine> statements;
  std::size_t position = 0;
  for (int number = 1; position < text.size(); ++number) {
    std::string const raw = TakeLine(text, position);
    if (number <= skipLines)
      continue;
    std::string line = Trimmed(raw);
    if (line.empty() || line[0] == '*')
      continue;
    line = Trimmed(WithoutComment(line));
    if (line.empty())
      continue;
    bool const continues = line[0] == '+';
    if (continues && statements.empty())
      throw NetlistError({file, number}, "+", "there is no line before that could be continued",
                         "remove the '+' or put the line behind the one it belongs to");
    if (!continues)
      statements.push_back({{}, file, {}});
    statements.back().Append(continues ? Trimmed(line.substr(1)) : line, number);
  }
  return statements;
}

} // namespace rf
