#include "desktop/solve/JobFrame.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/Checksum.h"

namespace desktop {

namespace {

constexpr std::string_view kMagic = "JOB\n";
constexpr std::size_t kKindAt = 4;
constexpr std::size_t kLengthAt = 8;
constexpr std::size_t kPayloadChecksumAt = 16;
constexpr std::size_t kHeaderChecksumAt = 20;

template <class Whole> void AppendWhole(std::string & bytes, Whole value) {
  for (std::size_t i = 0; i < sizeof(Whole); ++i)
    bytes += static_cast<char>(static_cast<std::uint64_t>(value) >> (8 * i));
}

template <class Whole> Whole WholeAt(std::string_view bytes, std::size_t at) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < sizeof(Whole); ++i)
    value |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[at + i])) << (8 * i);
  return static_cast<Whole>(value);
}

bool IsKind(std::uint32_t kind) {
  return kind >= static_cast<std::uint32_t>(FrameKind::kHello) &&
         kind <= static_cast<std::uint32_t>(FrameKind::kProfile);
}

} // namespace

bool JobFrame::Append(std::string & bytes) const {
  std::string encoded;
  if (!io::EncodeBlock(payload, io::Form::Binary, io::kExactDigits, encoded) || encoded.size() > kLongestPayload)
    return false;
  std::string header(kMagic);
  AppendWhole(header, static_cast<std::uint32_t>(kind));
  AppendWhole(header, static_cast<std::uint64_t>(encoded.size()));
  AppendWhole(header, io::Checksum(encoded));
  AppendWhole(header, io::Checksum(header));
  bytes += header;
  bytes += encoded;
  return true;
}

void JobFrameReader::Add(std::string_view bytes) {
  if (!m_error.empty())
    return;
  // What was taken is dropped when it outweighs the rest, so that each byte moves at most once.
  if (m_at > m_bytes.size() / 2) {
    m_bytes.erase(0, m_at);
    m_at = 0;
  }
  m_bytes.append(bytes);
}

JobFrameReader::Status JobFrameReader::Fail(AString const & error) {
  m_error = error;
  m_bytes = std::string();
  m_at = 0;
  return Status::kBroken;
}

JobFrameReader::Status JobFrameReader::Next(JobFrame & frame) {
  if (!m_error.empty())
    return Status::kBroken;
  std::string_view const rest = std::string_view(m_bytes).substr(m_at);
  if (rest.substr(0, kMagic.size()) != kMagic.substr(0, rest.size()))
    return Fail(L"it sent bytes that are no message");
  if (rest.size() < JobFrame::kHeaderSize)
    return Status::kNeedsMore;
  if (io::Checksum(rest.substr(0, kHeaderChecksumAt)) != WholeAt<std::uint32_t>(rest, kHeaderChecksumAt))
    return Fail(L"the header of a message is damaged");
  auto const kind = WholeAt<std::uint32_t>(rest, kKindAt);
  auto const length = WholeAt<std::uint64_t>(rest, kLengthAt);
  if (!IsKind(kind))
    return Fail(AString::Format(L"it sent a message of the unknown kind %u", kind));
  if (length > JobFrame::kLongestPayload)
    return Fail(AString::Format(L"it announced a message of %lu bytes", length));
  if (rest.size() - JobFrame::kHeaderSize < length)
    return Status::kNeedsMore;
  std::string_view const payload = rest.substr(JobFrame::kHeaderSize, length);
  if (io::Checksum(payload) != WholeAt<std::uint32_t>(rest, kPayloadChecksumAt))
    return Fail(L"the content of a message is damaged");
  io::CBlock decoded;
  if (!io::DecodeBlock(payload, io::Form::Binary, decoded))
    return Fail(L"the content of a message is no block");
  frame.kind = static_cast<FrameKind>(kind);
  frame.payload = std::move(decoded);
  frame.size = length;
  m_at += JobFrame::kHeaderSize + length;
  return Status::kFrame;
}

} // namespace desktop
