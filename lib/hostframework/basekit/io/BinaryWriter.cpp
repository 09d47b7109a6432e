#include "basekit/io/BinaryWriter.h"

#include "basekit/io/BinaryForm.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/GByteOrder.h"
#include "basekit/text/Utf8.h"

#include <algorithm>
#include <cstring>

namespace io {

namespace {

bool IsScalar(wchar_t c) {
  auto const code = static_cast<unsigned long>(c);
  return code < 0xD800 || (code >= 0xE000 && code <= 0x10FFFF);
}

std::size_t RunCount(CBlock_func_arg const & arguments) {
  std::size_t runs = 0;
  for (auto place = arguments.begin(); place != arguments.end(); ++runs) {
    auto const length =
        arguments.Reals(place).size() + arguments.Integers(place).size() + arguments.Texts(place).size();
    arguments.Skip(place, std::max<std::size_t>(length, 1));
  }
  return runs;
}

} // namespace

bool BinaryWriter::Item(CBlock_item const & item, int depth) {
  switch (item.ItemKind()) {
  case CBlock_item::Kind::Value:
    Put(ItemTag::Value);
    Value(static_cast<CBlock_value const &>(item));
    return true;
  case CBlock_item::Kind::NamedValue:
    Put(ItemTag::NamedValue);
    Text(item.Name());
    Value(static_cast<CBlock_named_value const &>(item).Value());
    return true;
  case CBlock_item::Kind::Func:
    Put(ItemTag::Func);
    Text(item.Name());
    Arguments(static_cast<CBlock_func const &>(item));
    return true;
  case CBlock_item::Kind::Vec:
    Put(ItemTag::Vec);
    Text(item.Name());
    Arguments(static_cast<CBlock_vec const &>(item).Values());
    return true;
  case CBlock_item::Kind::Block:
    return Body(static_cast<CBlock const &>(item), depth);
  }
  return false;
}

bool BinaryWriter::Body(CBlock const & block, int depth) {
  if (depth >= kMaxDepth)
    return false;
  Put(ItemTag::Block);
  Text(block.Name());
  auto const lengthAt = m_out.size();
  m_out.append(8, '\0');
  for (auto const & child : block)
    if (!Item(*child, depth + 1))
      return false;
  std::uint64_t const length = m_out.size() - lengthAt - 8;
  for (unsigned i = 0; i < 8; ++i)
    m_out[lengthAt + i] = static_cast<char>(length >> (8 * i));
  return true;
}

void BinaryWriter::Arguments(CBlock_func_arg const & arguments) {
  Count(RunCount(arguments));
  for (auto place = arguments.begin(); place != arguments.end();) {
    if (auto const reals = arguments.Reals(place); !reals.empty()) {
      Put(RunTag::Reals);
      Numbers(reals);
      arguments.Skip(place, reals.size());
    } else if (auto const integers = arguments.Integers(place); !integers.empty()) {
      Put(RunTag::Integers);
      Numbers(integers);
      arguments.Skip(place, integers.size());
    } else if (auto const texts = arguments.Texts(place); !texts.empty()) {
      Put(RunTag::Texts);
      Count(texts.size());
      for (auto const & text : texts)
        Text(text);
      arguments.Skip(place, texts.size());
    } else {
      auto const item = *place;
      Put(item->IsNamedValue() ? RunTag::Named : RunTag::Value);
      if (item->IsNamedValue())
        Text(item->Name());
      Value(place.Value());
      ++place;
    }
  }
}

void BinaryWriter::Value(CBlock_value const & value) {
  switch (value.ValueType()) {
  case CBlock_value::Type::None:
    Put(ValueTag::None);
    break;
  case CBlock_value::Type::Text: {
    AString text;
    value.Query(text);
    Put(ValueTag::Text);
    Text(text);
    break;
  }
  case CBlock_value::Type::Bool: {
    bool flag = false;
    value.Query(flag);
    Put(flag ? ValueTag::True : ValueTag::False);
    break;
  }
  case CBlock_value::Type::Integer: {
    long number = 0;
    value.Query(number);
    Put(ValueTag::Integer);
    auto const bits = static_cast<std::uint64_t>(number);
    for (unsigned i = 0; i < 8; ++i)
      m_out += static_cast<char>(bits >> (8 * i));
    break;
  }
  case CBlock_value::Type::Real: {
    double number = 0;
    value.Query(number);
    Put(ValueTag::Real);
    auto const bits = std::bit_cast<std::uint64_t>(number);
    for (unsigned i = 0; i < 8; ++i)
      m_out += static_cast<char>(bits >> (8 * i));
    break;
  }
  }
}

// The lowest bit of the length tells texts of plain codes, four bytes each, which UTF-8 cannot hold.
void BinaryWriter::Text(AString const & text) {
  auto const view = text.View();
  if (text::IsAscii(view)) {
    Count(view.size() * 2);
    text::AppendUtf8(m_out, view);
    return;
  }
  if (std::all_of(view.begin(), view.end(), IsScalar)) {
    auto const bytes = text::ToUtf8(view);
    Count(bytes.size() * 2);
    m_out += bytes;
    return;
  }
  Count(view.size() * 4 * 2 + 1);
  for (wchar_t const c : view)
    for (unsigned i = 0; i < 4; ++i)
      m_out += static_cast<char>(static_cast<std::uint32_t>(c) >> (8 * i));
}

void BinaryWriter::Count(std::uint64_t count) {
  for (; count >= 0x80; count >>= 7)
    m_out += static_cast<char>(count | 0x80);
  m_out += static_cast<char>(count);
}

template <class Number> void BinaryWriter::Numbers(std::span<Number const> numbers) {
  static_assert(sizeof(Number) == 8);
  Count(numbers.size());
  auto const at = m_out.size();
  m_out.append(reinterpret_cast<char const *>(numbers.data()), numbers.size_bytes());
  if constexpr (GByteOrder)
    for (auto i = at; i < m_out.size(); i += 8)
      std::reverse(m_out.data() + i, m_out.data() + i + 8);
}

} // namespace io
