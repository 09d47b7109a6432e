#include "basekit/io/BlockIndex.h"

#include "basekit/io/BinaryForm.h"
#include "basekit/io/BinaryReader.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock_item.h"
#include "basekit/io/StreamFlags.h"
#include "basekit/io/TextLexer.h"

#include <vector>

namespace io {

namespace {

struct Head {
  std::size_t start = 0;
  /// Nothing for a block whose name can't be read.
  std::optional<AString> name;
  /// Written files indent what lies in a block: a head that begins its line lies in none, whatever stands open.
  bool beginsLine = false;
};

bool BeginsLine(std::string_view bytes, std::size_t position) { return position == 0 || bytes[position - 1] == '\n'; }

/// Finds the whole blocks of a run of text in one pass.  A malformed spot breaks the blocks that are open there: those
/// that were whole by then and begin their lines count, and the pass goes on with the next line that begins with a
/// head.
class TextScan {
public:
  TextScan(std::string_view bytes, std::size_t position) : m_bytes(bytes), m_lexer(bytes, position) {}

  /// Up to the end or the next binary item.
  template <class Sink> std::size_t Run(Sink const & sink) {
    for (;;) {
      auto const at = TextLexer::SkipBlanks(m_bytes, m_lexer.Position());
      bool const isEnd = at == m_bytes.size();
      if (isEnd || (m_open.empty() && IsItemTag(m_bytes[at]))) {
        Break(sink);
        return at;
      }
      if (Step(sink))
        continue;
      Break(sink);
      m_lexer.MoveTo(NextHead(at));
    }
  }

private:
  template <class Sink> bool Step(Sink const & sink) {
    TextLexer::Token token;
    if (!m_lexer.Next(token))
      return false;
    bool const mayBeName = token.kind == CToken::Kind::Word || token.kind == CToken::Kind::Quoted;
    if (mayBeName && m_lexer.AtMark('{')) {
      Head head{token.start, {}, BeginsLine(m_bytes, token.start)};
      if (AString name; m_lexer.Name(token, name))
        head.name = name;
      m_open.push_back(std::move(head));
      m_lexer.Next(token);
    } else if (token.IsMark('{')) {
      m_open.push_back({token.start, {}, false});
    } else if (token.IsMark('}') && !m_open.empty()) {
      Close(sink);
    }
    return true;
  }

  template <class Sink> void Close(Sink const & sink) {
    Head const head = std::move(m_open.back());
    m_open.pop_back();
    while (!m_whole.empty() && m_whole.back().start > head.start)
      m_whole.pop_back();
    if (m_open.empty() && head.name)
      sink(*head.name, head.start);
    else if (head.name && head.beginsLine)
      m_whole.push_back(head);
  }

  template <class Sink> void Break(Sink const & sink) {
    for (Head const & head : m_whole)
      sink(*head.name, head.start);
    m_whole.clear();
    m_open.clear();
  }

  std::size_t NextHead(std::size_t position) const {
    TextLexer lexer(m_bytes, position);
    for (;;) {
      auto const end = m_bytes.find('\n', position);
      if (end == std::string_view::npos)
        return m_bytes.size();
      position = end + 1;
      lexer.MoveTo(position);
      TextLexer::Token token;
      bool const mayBegin = position < m_bytes.size() && !TextLexer::IsBlank(m_bytes[position]) && lexer.Next(token);
      bool const isName = token.kind == CToken::Kind::Word || token.kind == CToken::Kind::Quoted;
      if (mayBegin && isName && lexer.AtMark('{'))
        return position;
    }
  }

  std::string_view m_bytes;
  TextLexer m_lexer;
  std::vector<Head> m_open;
  std::vector<Head> m_whole; // in open ones, and beginning their lines
};

} // namespace

BlockIndex::BlockIndex(std::string_view bytes, int flags) {
  auto const sink = [&](AString const & name, std::size_t start) { Add(name, start, flags); };
  for (std::size_t position = 0;;) {
    position = TextScan(bytes, position).Run(sink);
    if (position == bytes.size())
      return;
    AString name;
    BinaryReader reader(bytes, position);
    std::size_t end = position;
    bool const isBlock = reader.BlockHead(name, end);
    if (!isBlock && !DecodeItemAt(bytes, end))
      return;
    if (isBlock)
      Add(name, position, flags);
    position = end;
  }
}

void BlockIndex::Add(AString const & name, std::size_t start, int flags) {
  auto const [at, added] = m_starts.emplace(name, start);
  if (!added && (flags & kIndexLastWins) != 0)
    at->second = start;
}

std::optional<std::size_t> BlockIndex::Find(AString const & name) const {
  auto const at = m_starts.find(name);
  return at == m_starts.end() ? std::nullopt : std::optional(at->second);
}

} // namespace io
