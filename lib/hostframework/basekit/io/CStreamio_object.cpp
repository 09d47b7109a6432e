#include "basekit/io/CStreamio_object.h"

#include "basekit/io/ByteIstream.h"
#include "basekit/io/ByteOstream.h"
#include "basekit/io/StreamFlags.h"
#include "basekit/text/Utf8.h"

namespace io {

AString CStreamio_object::Pack(int digits, int flags) const {
  ByteOstream out(flags, digits, true);
  write(out);
  if (out.fail())
    return {};
  auto const & bytes = out.Bytes();
  if (!out.IsBinary())
    return text::FromUtf8(bytes);
  std::wstring wide;
  wide.reserve(bytes.size());
  for (char const byte : bytes)
    wide += static_cast<wchar_t>(static_cast<unsigned char>(byte));
  return AString(std::wstring_view(wide));
}

AString CStreamio_object::Pack() const { return Pack(kExactDigits, kStreamPlain); }

AString CStreamio_object::BinaryPack() const { return Pack(kExactDigits, kStreamBinary); }

bool CStreamio_object::Unpack(AString const & packed) {
  std::string bytes;
  if (!PackedBytes(packed, bytes))
    return false;
  ByteIstream in(bytes);
  read(in);
  return !in.fail() && in.AtEnd();
}

std::size_t CStreamio_object::BinarySize(CAbstract_ostream const &) const {
  ByteOstream out(kStreamBinary, kExactDigits, true);
  write(out);
  return out.Bytes().size();
}

} // namespace io
