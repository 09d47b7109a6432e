#include "basekit/io/BlockIndex.h"

#include "basekit/io/BinaryForm.h"
#include "basekit/io/BinaryReader.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock_item.h"
#include "basekit/io/StreamFlags.h"
#include "basekit/io/TextLexer.h"

namespace io {

namespace {

// Moves behind the matching closing mark; false when the bytes end before it.
bool SkipBody(TextLexer & lexer, int open) {
  TextLexer::Token token;
  while (open > 0) {
    if (!lexer.Next(token) || token.kind == CToken::Kind::End)
      return false;
    if (token.IsMark('{'))
      ++open;
    else if (token.IsMark('}'))
      --open;
  }
  return true;
}

// Steps over one token, or over a whole block, whose name is then given; false when nothing more can be read.
bool StepText(TextLexer & lexer, AString & name, std::size_t & start, bool & isBlock) {
  TextLexer::Token token;
  if (!lexer.Next(token) || token.kind == CToken::Kind::End)
    return false;
  start = token.start;
  bool const mayBeName = token.kind == CToken::Kind::Word || token.kind == CToken::Kind::Quoted;
  isBlock = mayBeName && lexer.AtMark('{') && lexer.Name(token, name);
  if (!isBlock)
    return true;
  lexer.Next(token);
  return SkipBody(lexer, 1);
}

} // namespace

BlockIndex::BlockIndex(std::string_view bytes, int flags) {
  TextLexer lexer(bytes, 0);
  for (;;) {
    auto start = TextLexer::SkipBlanks(bytes, lexer.Position());
    AString name;
    bool isBlock = false;
    if (start < bytes.size() && IsItemTag(bytes[start])) {
      BinaryReader reader(bytes, start);
      std::size_t end = start;
      isBlock = reader.BlockHead(name, end);
      if (!isBlock && !DecodeItemAt(bytes, end))
        return;
      lexer.MoveTo(end);
    } else if (!StepText(lexer, name, start, isBlock)) {
      return;
    }
    if (isBlock)
      Add(name, start, flags);
  }
}

void BlockIndex::Add(AString const & name, std::size_t start, int flags) {
  auto const [at, added] = m_starts.emplace(name.ToLower(), start);
  if (!added && (flags & kIndexLastWins) != 0)
    at->second = start;
}

std::optional<std::size_t> BlockIndex::Find(AString const & name) const {
  auto const at = m_starts.find(name.ToLower());
  return at == m_starts.end() ? std::nullopt : std::optional(at->second);
}

} // namespace io
