#pragma once

#include <string>

namespace io {

class CBlock;
class CBlock_func_arg;
class CBlock_item;
class CBlock_value;

/// Writes items in the text form, one item a line or all on one line.  See docs/formats/blocks.md.
class TextWriter {
public:
  TextWriter(std::string & out, int digits, bool oneLine) : m_out(out), m_digits(digits), m_oneLine(oneLine) {}

  /// False when the item is nested too deeply; what was written then counts for nothing.
  bool Item(CBlock_item const & item, int depth = 0);

private:
  bool Body(CBlock const & block, int depth);
  void Separator(int depth);
  void Arguments(CBlock_func_arg const & arguments);
  void Value(CBlock_value const & value);

  std::string & m_out;
  int m_digits;
  bool m_oneLine;
};

} // namespace io
