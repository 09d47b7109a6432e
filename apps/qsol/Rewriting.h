#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace qsol {

/// What a verb that writes a library anew was asked for.
struct RewriteOptions {
  std::string file;
  /// Work that is not committed becomes part of the library; without it such work is a refusal.
  bool commit = false;
  /// The form that every block takes; as they are when it is not told.
  std::optional<bool> toBinary;
  bool json = false;
};

struct RewriteResult {
  std::uint64_t bytesBefore = 0;
  std::uint64_t bytesAfter = 0;
  std::uint64_t blocks = 0;
  /// Whether there was work to commit.
  bool committed = false;
};

/// Writes the library anew without dead space, under its lock: a new file that takes the place of the old one at once.
/// Throws Failure, and the library is as it was, while another process writes it, when a private file stands beside it
/// that is not its own to commit, and when a block can't be read.
RewriteResult Rewrite(RewriteOptions const & options);

} // namespace qsol
