#include "basekit/io/BlockPatch.h"

#include "basekit/io/BlockJournal.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/RecordFormat.h"
#include "basekit/io/TextLexer.h"
#include "basekit/io/TextTokens.h"

#include <algorithm>
#include <set>

namespace io {

namespace {

constexpr std::string_view kHead = "edits ";
constexpr std::size_t kOffsetDigits = 16;
constexpr std::size_t kLengthDigits = 12;
constexpr std::size_t kHeadSize = kHead.size() + kOffsetDigits + 1 + kLengthDigits + 1;

bool ParseHead(std::string_view payload, std::uint64_t & previous, std::uint64_t & length) {
  if (payload.size() < kHeadSize || !payload.starts_with(kHead))
    return false;
  auto const offset = payload.substr(kHead.size(), kOffsetDigits);
  auto const bytes = payload.substr(kHead.size() + kOffsetDigits + 1, kLengthDigits);
  return ParseHex(offset, previous) && payload[kHead.size() + kOffsetDigits] == ' ' && ParseHex(bytes, length) &&
         payload[kHeadSize - 1] == '\n' && length <= payload.size() - kHeadSize;
}

/// The line behind "in".
bool ParseChild(std::string_view line, BlockPatch::Part & part) {
  part.isBlockItself = line.empty();
  if (part.isBlockItself)
    return true;
  if (line.front() != ' ')
    return false;
  TextLexer lexer(line, 1);
  TextLexer::Token token;
  bool const isName = lexer.Next(token) && (token.kind == CToken::Kind::Word || token.kind == CToken::Kind::Quoted) &&
                      lexer.Name(token, part.child);
  return isName && lexer.Position() == line.size();
}

bool IsEdit(std::string_view line) {
  return line.starts_with("insert ") || line.starts_with("before ") || line.starts_with("remove ");
}

bool ParseParts(std::string_view lines, std::vector<BlockPatch::Part> & parts) {
  while (!lines.empty()) {
    auto const end = lines.find('\n');
    if (end == std::string_view::npos)
      return false;
    auto const line = lines.substr(0, end);
    if (line.starts_with("in") && !IsEdit(line)) {
      if (!ParseChild(line.substr(2), parts.emplace_back()))
        return false;
    } else if (parts.empty() || !IsEdit(line)) {
      return false;
    } else {
      parts.back().lines.append(lines, 0, end + 1);
    }
    lines.remove_prefix(end + 1);
  }
  return true;
}

// Either the block itself is edited, or children of different names of a block that comes anew.
bool IsWhole(BlockPatch const & patch) {
  std::set<AString, AString::NoCaseLess> names;
  for (auto const & part : patch.parts)
    if (part.isBlockItself ? patch.parts.size() > 1 : !names.insert(part.child).second)
      return false;
  return !patch.parts.empty() && patch.parts.front().isBlockItself == patch.content.empty();
}

BlockPatch::Part * FindPart(BlockPatch & patch, BlockPatch::Part const & like) {
  auto const found = std::find_if(patch.parts.begin(), patch.parts.end(), [&](auto const & part) {
    return part.isBlockItself == like.isBlockItself && AString::MatchNoCase(part.child, like.child);
  });
  return found == patch.parts.end() ? nullptr : &*found;
}

// The former child is only looked at: the block must stay as it was when a later part doesn't fit.
bool EditChild(BlockPatch::Part const & part, CBlock const & block, CBlock & anew) {
  auto const * const former = block.FindBlock(part.child);
  auto * const child = static_cast<CBlock *>(anew.FindItem(part.child, CBlock_item::Kind::Block));
  if (!former || !child || !child->Empty())
    return false;
  for (auto const & item : *former)
    *child << item;
  return ApplyEdits(part.lines, *child);
}

} // namespace

void FormatPatch(BlockPatch const & patch, std::string & payload) {
  std::string lines;
  for (auto const & part : patch.parts) {
    lines += "in";
    if (!part.isBlockItself) {
      lines += ' ';
      AppendName(lines, part.child);
    }
    lines += '\n';
    lines += part.lines;
  }
  payload += kHead;
  AppendHex(payload, patch.previous, kOffsetDigits);
  payload += ' ';
  AppendHex(payload, lines.size(), kLengthDigits);
  payload += '\n';
  payload += lines;
  payload += patch.content;
}

bool ParsePatch(std::string_view payload, BlockPatch & patch) {
  BlockPatch read;
  std::uint64_t length = 0;
  if (!ParseHead(payload, read.previous, length))
    return false;
  payload.remove_prefix(kHeadSize);
  if (!ParseParts(payload.substr(0, length), read.parts))
    return false;
  read.content = payload.substr(length);
  if (!IsWhole(read))
    return false;
  patch = std::move(read);
  return true;
}

bool MergePatch(BlockPatch const & later, BlockPatch & patch) {
  // Without a part of the same name the former child is the one that the first patch brings whole.
  std::vector<BlockPatch::Part *> formers;
  for (auto const & part : later.parts)
    formers.push_back(FindPart(patch, part));
  if (std::find(formers.begin(), formers.end(), nullptr) != formers.end())
    return false;
  std::vector<BlockPatch::Part> parts;
  for (std::size_t i = 0; i < formers.size(); ++i) {
    parts.push_back(std::move(*formers[i]));
    parts.back().lines += later.parts[i].lines;
  }
  patch.parts = std::move(parts);
  patch.content = later.content;
  return true;
}

bool JoinPatches(BlockPatch & earlier, BlockPatch & later) {
  bool const isSame = std::equal(earlier.parts.begin(), earlier.parts.end(), later.parts.begin(), later.parts.end(),
                                 [](BlockPatch::Part const & a, BlockPatch::Part const & b) {
                                   return a.isBlockItself == b.isBlockItself && a.child == b.child;
                                 });
  if (!isSame)
    return false;
  for (std::size_t i = 0; i < earlier.parts.size(); ++i)
    earlier.parts[i].lines += later.parts[i].lines;
  earlier.content.swap(later.content);
  return true;
}

bool ApplyPatch(BlockPatch const & patch, Form form, CBlock & block) {
  if (!IsWhole(patch))
    return false;
  if (patch.parts.front().isBlockItself)
    return ApplyEdits(patch.parts.front().lines, block);
  CBlock anew;
  if (!DecodeBlock(patch.content, form, anew))
    return false;
  for (auto const & part : patch.parts)
    if (!EditChild(part, block, anew))
      return false;
  block = std::move(anew);
  return true;
}

} // namespace io
