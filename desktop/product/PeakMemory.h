#pragma once

namespace desktop {

/// The most memory that this process has held, in bytes, since it was started or since the measuring of the running job
/// began: not what the process that started it held, which the system's resource usage counts in.
double PeakMemory();

} // namespace desktop
