#include "basekit/io/BinaryReader.h"

#include "basekit/io/BinaryForm.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/GByteOrder.h"
#include "basekit/text/Utf8.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace io {

CBlock_ptr<CBlock_item> BinaryReader::Item(int depth) {
  unsigned char tag = 0;
  if (!Byte(tag))
    return {};
  if (tag == static_cast<unsigned char>(ItemTag::Block)) {
    --m_position;
    return Body(depth);
  }
  if (tag == static_cast<unsigned char>(ItemTag::Value)) {
    CBlock_ptr<CBlock_value> value(new CBlock_value);
    return depth == 0 && Value(*value) ? CBlock_ptr<CBlock_item>(value) : CBlock_ptr<CBlock_item>();
  }
  AString name;
  if (!Name(name))
    return {};
  switch (static_cast<ItemTag>(tag)) {
  case ItemTag::Func: {
    CBlock_ptr<CBlock_func> func(new CBlock_func(name));
    return Arguments(*func, true) ? CBlock_ptr<CBlock_item>(func) : CBlock_ptr<CBlock_item>();
  }
  case ItemTag::Vec: {
    CBlock_ptr<CBlock_vec> vec(new CBlock_vec(name));
    return Arguments(vec->Values(), false) ? CBlock_ptr<CBlock_item>(vec) : CBlock_ptr<CBlock_item>();
  }
  case ItemTag::NamedValue: {
    CBlock_ptr<CBlock_named_value> named(new CBlock_named_value(name));
    return Value(named->Value()) ? CBlock_ptr<CBlock_item>(named) : CBlock_ptr<CBlock_item>();
  }
  default:
    return {};
  }
}

bool BinaryReader::BlockHead(AString & name, std::size_t & end) {
  unsigned char tag = 0;
  std::uint64_t length = 0;
  if (!Byte(tag) || tag != static_cast<unsigned char>(ItemTag::Block) || !Name(name) || !Eight(length) ||
      length > Left())
    return false;
  end = m_position + static_cast<std::size_t>(length);
  return true;
}

CBlock_ptr<CBlock_item> BinaryReader::Body(int depth) {
  AString name;
  std::size_t end = 0;
  if (depth >= kMaxDepth || !BlockHead(name, end))
    return {};
  CBlock_ptr<CBlock> block(new CBlock(name));
  auto const whole = m_bytes;
  m_bytes = whole.substr(0, end); // no child reaches behind its block
  while (m_position < end) {
    auto const child = Item(depth + 1);
    if (!child)
      return {};
    *block << child;
  }
  m_bytes = whole;
  return block;
}

bool BinaryReader::Arguments(CBlock_func_arg & arguments, bool mayBeNamed) {
  std::uint64_t runs = 0;
  if (!Count(runs) || runs > Left())
    return false;
  for (; runs > 0; --runs)
    if (!Run(arguments, mayBeNamed))
      return false;
  return true;
}

bool BinaryReader::Run(CBlock_func_arg & arguments, bool mayBeNamed) {
  unsigned char tag = 0;
  if (!Byte(tag))
    return false;
  switch (static_cast<RunTag>(tag)) {
  case RunTag::Reals:
    return Numbers<double>(arguments);
  case RunTag::Integers:
    return Numbers<long>(arguments);
  case RunTag::Texts: {
    std::uint64_t count = 0;
    if (!Count(count) || count > Left())
      return false;
    for (; count > 0; --count) {
      AString text;
      if (!Text(text))
        return false;
      arguments.AppendText(text);
    }
    return true;
  }
  case RunTag::Named: {
    AString name;
    if (!mayBeNamed || !Name(name))
      return false;
    CBlock_ptr<CBlock_named_value> named(new CBlock_named_value(name));
    arguments.AppendArgument(named);
    return Value(named->Value());
  }
  case RunTag::Value: {
    CBlock_value value;
    if (!Value(value))
      return false;
    arguments.AppendArgument(value);
    return true;
  }
  }
  return false;
}

template <class Number> bool BinaryReader::Numbers(CBlock_func_arg & arguments) {
  static_assert(sizeof(Number) == 8);
  std::uint64_t count = 0;
  if (!Count(count) || count > Left() / sizeof(Number))
    return false;
  std::vector<Number> numbers(static_cast<std::size_t>(count));
  auto const size = numbers.size() * sizeof(Number);
  if (size > 0)
    std::memcpy(numbers.data(), m_bytes.data() + m_position, size);
  if constexpr (GByteOrder)
    for (auto & number : numbers) {
      auto * const bytes = reinterpret_cast<unsigned char *>(&number);
      std::reverse(bytes, bytes + sizeof number);
    }
  m_position += size;
  arguments.AppendRun(std::move(numbers));
  return true;
}

bool BinaryReader::Value(CBlock_value & value) {
  unsigned char tag = 0;
  std::uint64_t bits = 0;
  if (!Byte(tag))
    return false;
  switch (static_cast<ValueTag>(tag)) {
  case ValueTag::None:
    value = CBlock_value();
    return true;
  case ValueTag::Text: {
    AString text;
    if (!Text(text))
      return false;
    value = CBlock_value(text);
    return true;
  }
  case ValueTag::False:
  case ValueTag::True:
    value = CBlock_value(tag == static_cast<unsigned char>(ValueTag::True));
    return true;
  case ValueTag::Integer:
    if (!Eight(bits))
      return false;
    value = CBlock_value(static_cast<long>(bits));
    return true;
  case ValueTag::Real:
    if (!Eight(bits))
      return false;
    value = CBlock_value(std::bit_cast<double>(bits));
    return true;
  }
  return false;
}

bool BinaryReader::TextBytes(std::string_view & bytes, bool & areCodes) {
  std::uint64_t head = 0;
  if (!Count(head) || head / 2 > Left())
    return false;
  areCodes = head % 2 != 0;
  bytes = m_bytes.substr(m_position, static_cast<std::size_t>(head / 2));
  m_position += bytes.size();
  return true;
}

bool BinaryReader::Decode(std::string_view bytes, bool areCodes, AString & text) {
  if (!areCodes)
    return text::FromUtf8Strict(bytes, text);
  if (bytes.size() % 4 != 0)
    return false;
  m_scratch.clear();
  for (std::size_t at = 0; at < bytes.size(); at += 4) {
    std::uint32_t code = 0;
    for (unsigned i = 0; i < 4; ++i)
      code |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + i])) << (8 * i);
    m_scratch += static_cast<wchar_t>(code);
  }
  text = AString(std::wstring_view(m_scratch));
  return true;
}

bool BinaryReader::Text(AString & text) {
  std::string_view bytes;
  bool areCodes = false;
  return TextBytes(bytes, areCodes) && Decode(bytes, areCodes, text);
}

bool BinaryReader::Name(AString & name) {
  std::string_view bytes;
  bool areCodes = false;
  if (!TextBytes(bytes, areCodes))
    return false;
  if (auto const * known = areCodes ? nullptr : m_known.Find(bytes)) {
    name = *known;
    return true;
  }
  if (!Decode(bytes, areCodes, name))
    return false;
  if (!areCodes)
    m_known.Keep(bytes, name);
  return true;
}

bool BinaryReader::Byte(unsigned char & byte) {
  if (Left() == 0)
    return false;
  byte = static_cast<unsigned char>(m_bytes[m_position++]);
  return true;
}

bool BinaryReader::Count(std::uint64_t & count) {
  count = 0;
  for (unsigned shift = 0; shift < 63; shift += 7) {
    unsigned char byte = 0;
    if (!Byte(byte))
      return false;
    count |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
    if (byte < 0x80)
      return true;
  }
  return false;
}

bool BinaryReader::Eight(std::uint64_t & bits) {
  if (Left() < 8)
    return false;
  bits = 0;
  for (unsigned i = 0; i < 8; ++i)
    bits |= static_cast<std::uint64_t>(static_cast<unsigned char>(m_bytes[m_position + i])) << (8 * i);
  m_position += 8;
  return true;
}

} // namespace io
