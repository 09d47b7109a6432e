#pragma once

#include <cstdint>

/// Figures of a block library; lengths are bytes.
struct CStreamioLibraryStats {
  /// 0 when the library is attached and in order, else the LibIOReturn that tells what is wrong.
  std::uint32_t status = 0;
  std::uint32_t blocks = 0;
  std::uint64_t liveBytes = 0;
  std::uint64_t deadBytes = 0;
  std::uint64_t fileBytes = 0;
  /// Solved variations; filled by the solution manager, the library knows none.
  std::uint64_t variations = 0;
};
