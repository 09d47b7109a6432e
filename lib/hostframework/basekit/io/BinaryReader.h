#pragma once

#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/KnownNames.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace io {

class CBlock_func_arg;

/// Reads items of the binary form.  Malformed or too deeply nested input gives null; no count is believed that
/// the bytes do not hold.
class BinaryReader {
public:
  BinaryReader(std::string_view bytes, std::size_t position) : m_bytes(bytes), m_position(position) {}

  CBlock_ptr<CBlock_item> Item() { return Item(0); }
  std::size_t Position() const { return m_position; }
  /// The head of a block: its name, and where it ends; false when it is none or does not lie whole in the bytes.
  bool BlockHead(AString & name, std::size_t & end);

private:
  CBlock_ptr<CBlock_item> Item(int depth);
  CBlock_ptr<CBlock_item> Body(int depth);
  bool Arguments(CBlock_func_arg & arguments, bool mayBeNamed);
  bool Run(CBlock_func_arg & arguments, bool mayBeNamed);
  bool Value(CBlock_value & value);
  bool Text(AString & text);
  bool Name(AString & name);
  bool TextBytes(std::string_view & bytes, bool & areCodes);
  bool Decode(std::string_view bytes, bool areCodes, AString & text);
  bool Byte(unsigned char & byte);
  bool Count(std::uint64_t & count);
  bool Eight(std::uint64_t & bits);
  template <class Number> bool Numbers(CBlock_func_arg & arguments);
  std::size_t Left() const { return m_bytes.size() - m_position; }

  std::string_view m_bytes;
  std::size_t m_position;
  std::wstring m_scratch;
  KnownNames m_known;
};

} // namespace io
