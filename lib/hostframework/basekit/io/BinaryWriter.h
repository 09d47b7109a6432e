#pragma once

#include <cstdint>
#include <span>
#include <string>

class AString;

namespace io {

class CBlock;
class CBlock_func_arg;
class CBlock_item;
class CBlock_value;

/// Writes items in the binary form.
class BinaryWriter {
public:
  explicit BinaryWriter(std::string & out) : m_out(out) {}

  /// False when the item is nested too deeply; what was written then counts for nothing.
  bool Item(CBlock_item const & item, int depth = 0);

private:
  bool Body(CBlock const & block, int depth);
  void Arguments(CBlock_func_arg const & arguments);
  void Value(CBlock_value const & value);
  void Text(AString const & text);
  void Count(std::uint64_t count);
  template <class Tag> void Put(Tag tag) { m_out += static_cast<char>(tag); }
  template <class Number> void Numbers(std::span<Number const> numbers);

  std::string & m_out;
};

} // namespace io
