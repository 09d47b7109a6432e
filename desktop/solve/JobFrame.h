#pragma once

#include "basekit/io/CBlock.h"
#include "basekit/text/AString.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace desktop {

/// What desktop and worker say to each other.
enum class FrameKind : std::uint8_t {
  kHello = 1,       ///< worker: it is ready for jobs
  kJob = 2,         ///< desktop: solve this
  kProgress = 3,    ///< worker: how far the job is
  kResult = 4,      ///< worker: the job is done
  kError = 5,       ///< worker: the job can't be done
  kPass = 6,        ///< worker: what a pass of the job measured
  kConvergence = 7, ///< worker: whether the job has met its target by now
  kProfile = 8      ///< worker: what a part of the job cost
};

/// One message on a pipe: a header of 24 bytes (magic, kind, length, checksums of payload and header) and a block in
/// binary form.
struct JobFrame {
  static constexpr std::size_t kHeaderSize = 24;
  static constexpr std::uint64_t kLongestPayload = std::uint64_t(1) << 30;

  FrameKind kind = FrameKind::kHello;
  io::CBlock payload;
  std::size_t size = 0; ///< bytes that the payload took on the pipe; the reader sets it

  /// Appends the frame; false, and nothing appended, when the payload is nested too deeply or too long.
  [[nodiscard]] bool Append(std::string & bytes) const;
};

/// Takes frames out of the bytes that a pipe delivers, in whatever pieces.  A length is believed only after the
/// header's checksum, and memory grows with what arrived, not with what was announced.
class JobFrameReader {
public:
  enum class Status {
    kFrame,
    kNeedsMore,
    kBroken ///< the bytes are no frame; for good, since nothing tells where the next one begins
  };

  void Add(std::string_view bytes);
  Status Next(JobFrame & frame);
  /// What is wrong with the bytes, once they are broken.
  AString const & GetError() const { return m_error; }
  /// Whether the stream could end here without cutting a frame.
  bool IsBetweenFrames() const { return m_at == m_bytes.size(); }

private:
  Status Fail(AString const & error);

  std::string m_bytes;
  std::size_t m_at = 0;
  AString m_error;
};

} // namespace desktop
