#include "basekit/io/BlockCodec.h"

#include "basekit/io/BinaryForm.h"
#include "basekit/io/BinaryReader.h"
#include "basekit/io/BinaryWriter.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/TextReader.h"
#include "basekit/io/TextWriter.h"
#include "basekit/text/Utf8.h"

namespace io {

namespace {

// Takes back what a failed writer left.
bool KeepIf(bool written, std::string & out, std::size_t formerSize) {
  if (!written)
    out.resize(formerSize);
  return written;
}

} // namespace

bool EncodeItem(CBlock_item const & item, Form form, int precision, std::string & out) {
  auto const size = out.size();
  return KeepIf(form == Form::Text ? TextWriter(out, precision, false).Item(item) : BinaryWriter(out).Item(item), out,
                size);
}

bool EncodeBlock(CBlock const & block, Form form, int precision, std::string & out) {
  return EncodeItem(block, form, precision, out);
}

bool EncodeLine(CBlock_item const & item, int precision, std::string & out) {
  auto const size = out.size();
  return KeepIf(TextWriter(out, precision, true).Item(item), out, size);
}

CBlock_ptr<CBlock_item> DecodeItemAt(std::string_view bytes, std::size_t & position) {
  auto const start = TextLexer::SkipBlanks(bytes, position);
  CBlock_ptr<CBlock_item> item;
  std::size_t end = start;
  if (start < bytes.size() && IsItemTag(bytes[start])) {
    BinaryReader reader(bytes, start);
    item = reader.Item();
    end = reader.Position();
  } else {
    TextReader reader(bytes, start);
    item = reader.Item();
    end = reader.Position();
  }
  if (item)
    position = end;
  return item;
}

CBlock_ptr<CBlock_item> DecodeItem(std::string_view bytes, Form form) {
  auto const start = TextLexer::SkipBlanks(bytes, 0);
  if (start == bytes.size() || IsItemTag(bytes[start]) != (form == Form::Binary))
    return {};
  std::size_t position = start;
  auto const item = DecodeItemAt(bytes, position);
  auto const rest = form == Form::Text ? TextLexer::SkipBlanks(bytes, position) : position;
  return rest == bytes.size() ? item : CBlock_ptr<CBlock_item>();
}

bool DecodeBlock(std::string_view bytes, Form form, CBlock & out) {
  CBlock_ptr<CBlock> const block(DecodeItem(bytes, form));
  if (block)
    out = std::move(*block);
  return static_cast<bool>(block);
}

bool PackedBytes(AString const & packed, std::string & bytes) {
  bytes.clear();
  bool const isBinary = !packed.empty() && packed[0] > 0 && packed[0] < 0x20 && IsItemTag(static_cast<char>(packed[0]));
  if (!isBinary) {
    bytes = text::ToUtf8(packed);
    return true;
  }
  for (wchar_t const c : packed.View()) {
    if (static_cast<unsigned long>(c) > 0xFF)
      return false;
    bytes += static_cast<char>(c);
  }
  return true;
}

CBlock_ptr<CBlock_item> DecodePacked(AString const & packed) {
  std::string bytes;
  if (!PackedBytes(packed, bytes))
    return {};
  bool const isBinary = !bytes.empty() && IsItemTag(bytes.front());
  return DecodeItem(bytes, isBinary ? Form::Binary : Form::Text);
}

} // namespace io
