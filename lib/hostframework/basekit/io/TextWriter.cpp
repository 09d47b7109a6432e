#include "basekit/io/TextWriter.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/TextTokens.h"

namespace io {

bool TextWriter::Item(CBlock_item const & item, int depth) {
  if (item.ItemKind() != CBlock_item::Kind::Value)
    AppendName(m_out, item.Name());
  switch (item.ItemKind()) {
  case CBlock_item::Kind::Value:
    Value(static_cast<CBlock_value const &>(item));
    return true;
  case CBlock_item::Kind::NamedValue:
    m_out += " = ";
    Value(static_cast<CBlock_named_value const &>(item).Value());
    return true;
  case CBlock_item::Kind::Func:
    m_out += '(';
    Arguments(static_cast<CBlock_func const &>(item));
    m_out += ')';
    return true;
  case CBlock_item::Kind::Vec:
    m_out += " [";
    Arguments(static_cast<CBlock_vec const &>(item).Values());
    m_out += ']';
    return true;
  case CBlock_item::Kind::Block:
    return Body(static_cast<CBlock const &>(item), depth);
  }
  return false;
}

bool TextWriter::Body(CBlock const & block, int depth) {
  if (depth >= kMaxDepth)
    return false;
  m_out += " {";
  for (auto const & child : block) {
    Separator(depth + 1);
    if (!Item(*child, depth + 1))
      return false;
  }
  if (!block.Empty())
    Separator(depth);
  m_out += '}';
  return true;
}

void TextWriter::Separator(int depth) {
  if (m_oneLine) {
    m_out += ' ';
  } else {
    m_out += '\n';
    m_out.append(2 * static_cast<std::size_t>(depth), ' ');
  }
}

void TextWriter::Arguments(CBlock_func_arg const & arguments) {
  bool first = true;
  auto const separate = [&] {
    if (!first)
      m_out += ", ";
    first = false;
  };
  for (auto place = arguments.begin(); place != arguments.end();) {
    auto const reals = arguments.Reals(place);
    for (double const value : reals) {
      separate();
      AppendReal(m_out, value, m_digits);
    }
    auto const integers = arguments.Integers(place);
    for (long const value : integers) {
      separate();
      AppendInteger(m_out, value);
    }
    auto const texts = arguments.Texts(place);
    for (AString const & value : texts) {
      separate();
      AppendQuoted(m_out, value);
    }
    auto const written = reals.size() + integers.size() + texts.size();
    arguments.Skip(place, written);
    if (written > 0)
      continue;
    separate();
    if (place.IsNamed())
      Item(**place);
    else
      Value(place.Value());
    ++place;
  }
}

void TextWriter::Value(CBlock_value const & value) {
  switch (value.ValueType()) {
  case CBlock_value::Type::None:
    m_out += "none";
    break;
  case CBlock_value::Type::Text: {
    AString text;
    value.Query(text);
    AppendQuoted(m_out, text);
    break;
  }
  case CBlock_value::Type::Bool: {
    bool flag = false;
    value.Query(flag);
    m_out += flag ? "true" : "false";
    break;
  }
  case CBlock_value::Type::Integer: {
    long number = 0;
    value.Query(number);
    AppendInteger(m_out, number);
    break;
  }
  case CBlock_value::Type::Real: {
    double number = 0;
    value.Query(number);
    AppendReal(m_out, number, m_digits);
    break;
  }
  }
}

} // namespace io
