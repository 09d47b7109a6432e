#include "basekit/io/RecordFormat.h"

#include "basekit/io/Checksum.h"

#include <array>
#include <cstring>

namespace io {

namespace {

// Takes fixed fields off the front of a text; once one does not fit, nothing fits.
class Fields {
public:
  explicit Fields(std::string_view text) : m_left(text) {}
  bool Good() const { return m_good; }

  void Literal(std::string_view expected) { m_good = Take(expected.size()) == expected && m_good; }
  std::uint64_t Hex(std::size_t digits) {
    std::uint64_t value = 0;
    m_good = ParseHex(Take(digits), value) && m_good;
    return value;
  }
  bool Either(std::string_view yes, std::string_view no) {
    std::string_view const word = Take(yes.size());
    m_good = m_good && (word == yes || word == no);
    return word == yes;
  }

private:
  std::string_view Take(std::size_t size) {
    if (m_left.size() < size) {
      m_good = false;
      return {};
    }
    std::string_view const taken = m_left.substr(0, size);
    m_left.remove_prefix(size);
    return taken;
  }

  std::string_view m_left;
  bool m_good = true;
};

constexpr std::size_t kFileChecksumAt = 67;
constexpr std::size_t kRecordChecksumAt = 66;

bool ParseHeaderLine(std::string_view bytes, FileHeader & header) {
  Fields fields(bytes.substr(0, kFileHeaderSize));
  fields.Literal(kLibraryMagic);
  header.version = static_cast<unsigned>(fields.Hex(4));
  fields.Literal(" ");
  header.isPrivate = fields.Either("private ", "public  ");
  header.isBinary = fields.Either("binary ", "text   ");
  fields.Literal("little ");
  header.salt = fields.Hex(16);
  fields.Literal(" ");
  header.baseCommit = fields.Hex(16);
  fields.Literal(" ");
  std::uint64_t const checksum = fields.Hex(8);
  fields.Literal("\n");
  return fields.Good() && checksum == Checksum(bytes.substr(0, kFileChecksumAt));
}

} // namespace

namespace {

// Each byte as two digits.
constexpr auto kDigitPairs = [] {
  std::array<char, 512> pairs{};
  for (std::size_t byte = 0; byte < 256; ++byte) {
    pairs[2 * byte] = "0123456789abcdef"[byte >> 4];
    pairs[2 * byte + 1] = "0123456789abcdef"[byte & 0xF];
  }
  return pairs;
}();

} // namespace

char * PutHex(char * at, std::uint64_t value, int digits) {
  for (int shift = 4 * digits - 8; shift >= 0; shift -= 8, at += 2)
    std::memcpy(at, &kDigitPairs[2 * (value >> shift & 0xFF)], 2);
  return at;
}

void AppendHex(std::string & out, std::uint64_t value, int digits) {
  char text[16];
  out.append(text, PutHex(text, value, digits));
}

namespace {

constexpr signed char kNoDigit = -1;

constexpr auto kDigitWorth = [] {
  std::array<signed char, 256> worth{};
  worth.fill(kNoDigit);
  for (int digit = 0; digit < 16; ++digit)
    worth[static_cast<unsigned char>("0123456789abcdef"[digit])] = static_cast<signed char>(digit);
  return worth;
}();

} // namespace

bool ParseHex(std::string_view digits, std::uint64_t & value) {
  if (digits.empty() || digits.size() > 16)
    return false;
  value = 0;
  for (char const digit : digits) {
    int const worth = kDigitWorth[static_cast<unsigned char>(digit)];
    if (worth == kNoDigit)
      return false;
    value = value << 4 | static_cast<unsigned>(worth);
  }
  return true;
}

std::string FormatFileHeader(FileHeader const & header) {
  std::string line(kLibraryMagic);
  AppendHex(line, header.version, 4);
  line += header.isPrivate ? " private " : " public  ";
  line += header.isBinary ? "binary " : "text   ";
  line += "little ";
  AppendHex(line, header.salt, 16);
  line += ' ';
  AppendHex(line, header.baseCommit, 16);
  line += ' ';
  AppendHex(line, Checksum(line), 8);
  line += '\n';
  return line;
}

HeaderState ParseFileHeader(std::string_view bytes, FileHeader & header) {
  header = FileHeader();
  if (ParseHeaderLine(bytes, header))
    return header.version > kLibraryVersion ? HeaderState::Newer : HeaderState::Good;
  RecordHeader first;
  if (bytes.size() > kFileHeaderSize && ParseRecordHeader(bytes.substr(kFileHeaderSize), kFileHeaderSize, first)) {
    header = FileHeader();
    header.salt = first.salt;
    header.isBinary = (first.flags & kBinaryPayload) != 0;
    return HeaderState::Damaged;
  }
  return HeaderState::Foreign;
}

namespace {

// The offset takes part as 16 digits before the line.
std::uint32_t HeaderChecksum(std::string_view line, std::uint64_t offset) {
  char place[16];
  PutHex(place, offset, 16);
  return Checksum(line.substr(0, kRecordChecksumAt), Checksum(std::string_view(place, sizeof place)));
}

} // namespace

void FormatRecordHeader(RecordHeader const & header, std::uint64_t offset, char (&line)[kRecordHeaderSize]) {
  std::memset(line, ' ', sizeof line);
  line[0] = '#';
  line[1] = 'q';
  char * at = PutHex(line + 3, header.kind, 2);
  at = PutHex(at + 1, header.flags, 2);
  at = PutHex(at + 1, header.nameLength, 8);
  at = PutHex(at + 1, header.payloadLength, 12);
  at = PutHex(at + 1, header.salt, 16);
  at = PutHex(at + 1, header.nameChecksum, 8);
  at = PutHex(at + 1, header.payloadChecksum, 8);
  at = PutHex(at + 1, HeaderChecksum(std::string_view(line, sizeof line), offset), 8);
  *at = '\n';
}

bool ParseRecordHeader(std::string_view bytes, std::uint64_t offset, RecordHeader & header) {
  if (bytes.size() < kRecordHeaderSize)
    return false;
  Fields fields(bytes.substr(0, kRecordHeaderSize));
  fields.Literal("#q ");
  header.kind = static_cast<unsigned>(fields.Hex(2));
  fields.Literal(" ");
  header.flags = static_cast<unsigned>(fields.Hex(2));
  fields.Literal(" ");
  header.nameLength = static_cast<std::uint32_t>(fields.Hex(8));
  fields.Literal(" ");
  header.payloadLength = fields.Hex(12);
  fields.Literal(" ");
  header.salt = fields.Hex(16);
  fields.Literal(" ");
  header.nameChecksum = static_cast<std::uint32_t>(fields.Hex(8));
  fields.Literal(" ");
  header.payloadChecksum = static_cast<std::uint32_t>(fields.Hex(8));
  fields.Literal(" ");
  std::uint64_t const checksum = fields.Hex(8);
  fields.Literal("\n");
  if (!fields.Good())
    return false;
  return checksum == HeaderChecksum(bytes, offset);
}

std::uint32_t PartChecksum(std::string_view part) { return Checksum("\n", Checksum(part)); }

std::string FormatCommit(CommitInfo const & commit) {
  std::string text("index ");
  AppendHex(text, commit.indexOffset, 16);
  text += " commit ";
  AppendHex(text, commit.commit, 16);
  text += " number ";
  AppendHex(text, commit.number, 16);
  text += " merged ";
  AppendHex(text, commit.mergedSalt, 16);
  text += " to ";
  AppendHex(text, commit.mergedLength, 16);
  return text;
}

bool ParseCommit(std::string_view payload, CommitInfo & commit) {
  Fields fields(payload);
  fields.Literal("index ");
  commit.indexOffset = fields.Hex(16);
  fields.Literal(" commit ");
  commit.commit = fields.Hex(16);
  fields.Literal(" number ");
  commit.number = fields.Hex(16);
  fields.Literal(" merged ");
  commit.mergedSalt = fields.Hex(16);
  fields.Literal(" to ");
  commit.mergedLength = fields.Hex(16);
  return fields.Good();
}

} // namespace io
