#pragma once

namespace id {

/// No ID.  As a version it means the current version or any version, as each operation tells.
inline constexpr long invalidID = -1;
/// The first ID that a counter gives out.
inline constexpr long initialID = 1;

} // namespace id
