#include "basekit/io/IndexFormat.h"

#include "basekit/io/RecordFormat.h"
#include "basekit/io/RecordIndex.h"
#include "basekit/text/Utf8.h"

namespace io {

namespace {

constexpr std::string_view kHead = "previous";

// Takes " xxxx" or "\nxxxx" off the front.
bool TakeHex(std::string_view & left, char before, std::size_t digits, std::uint64_t & value) {
  if (left.size() <= digits || left[0] != before || !ParseHex(left.substr(1, digits), value))
    return false;
  left.remove_prefix(digits + 1);
  return true;
}

template <class Number> void PutLittle(std::string & out, Number value) {
  char bytes[sizeof value];
  for (char & byte : bytes) {
    byte = static_cast<char>(value & 0xFF);
    value = static_cast<Number>(value >> (sizeof value > 1 ? 8 : 0));
  }
  out.append(bytes, sizeof bytes);
}

template <class Number> Number TakeLittle(char const *& at) {
  Number value = 0;
  for (std::size_t i = 0; i < sizeof value; ++i)
    value = static_cast<Number>(value | static_cast<Number>(static_cast<unsigned char>(*at++)) << (8 * i));
  return value;
}

bool TakeTextFields(std::string_view & left, BlockPlace & place) {
  std::uint64_t kind = 0;
  std::uint64_t flags = 0;
  std::uint64_t checksum = 0;
  std::uint64_t nameLength = 0;
  bool const good = TakeHex(left, '\n', 2, kind) && TakeHex(left, ' ', 2, flags) &&
                    TakeHex(left, ' ', 16, place.offset) && TakeHex(left, ' ', 12, place.payloadLength) &&
                    TakeHex(left, ' ', 8, checksum) && TakeHex(left, ' ', 8, nameLength) && !left.empty() &&
                    left[0] == ' ';
  if (!good)
    return false;
  left.remove_prefix(1);
  place.kind = static_cast<std::uint8_t>(kind);
  place.flags = static_cast<std::uint8_t>(flags);
  place.payloadChecksum = static_cast<std::uint32_t>(checksum);
  place.nameLength = static_cast<std::uint32_t>(nameLength);
  return true;
}

bool TakeBinaryFields(std::string_view & left, BlockPlace & place) {
  if (left.size() < kSmallestBinaryEntry)
    return false;
  char const * at = left.data();
  place.kind = TakeLittle<std::uint8_t>(at);
  place.flags = TakeLittle<std::uint8_t>(at);
  place.offset = TakeLittle<std::uint64_t>(at);
  place.payloadLength = TakeLittle<std::uint64_t>(at);
  place.payloadChecksum = TakeLittle<std::uint32_t>(at);
  place.nameLength = TakeLittle<std::uint32_t>(at);
  left.remove_prefix(kSmallestBinaryEntry);
  return place.payloadLength <= kLongestPayload;
}

} // namespace

void AppendIndexHead(std::string & payload, std::uint64_t previous) {
  payload += kHead;
  payload += ' ';
  AppendHex(payload, previous, 16);
}

void AppendIndexEntry(std::string & payload, std::string_view name, BlockPlace const & place, bool isBinary) {
  if (isBinary) {
    PutLittle<std::uint8_t>(payload, place.kind);
    PutLittle<std::uint8_t>(payload, place.flags);
    PutLittle<std::uint64_t>(payload, place.offset);
    PutLittle<std::uint64_t>(payload, place.payloadLength);
    PutLittle<std::uint32_t>(payload, place.payloadChecksum);
    PutLittle<std::uint32_t>(payload, static_cast<std::uint32_t>(name.size()));
  } else {
    payload += '\n';
    AppendHex(payload, place.kind, 2);
    payload += ' ';
    AppendHex(payload, place.flags, 2);
    payload += ' ';
    AppendHex(payload, place.offset, 16);
    payload += ' ';
    AppendHex(payload, place.payloadLength, 12);
    payload += ' ';
    AppendHex(payload, place.payloadChecksum, 8);
    payload += ' ';
    AppendHex(payload, name.size(), 8);
    payload += ' ';
  }
  payload += name;
}

bool TakeIndexHead(std::string_view & left, std::uint64_t & previous) {
  if (left.substr(0, kHead.size()) != kHead)
    return false;
  left.remove_prefix(kHead.size());
  return TakeHex(left, ' ', 16, previous);
}

bool TakeIndexEntry(std::string_view & left, bool isBinary, std::string_view & name, BlockPlace & place) {
  if (!(isBinary ? TakeBinaryFields(left, place) : TakeTextFields(left, place)) || left.size() < place.nameLength)
    return false;
  name = left.substr(0, place.nameLength);
  left.remove_prefix(place.nameLength);
  bool const isKnown = place.kind == kBlockRecord || place.kind == kDeleteRecord || place.kind == kPatchRecord;
  return isKnown && text::IsUtf8(name);
}

} // namespace io
