#pragma once

namespace desktop {

/// Counts the requests to stop a solve.  Add may be called from a signal handler and from any thread; the rest belongs
/// to the thread that solves.
class StopRequests {
public:
  static void Add();
  /// Those that came since the last Settle.
  static int Count();
  /// Readable while there may be a new request; -1 when the system gave none.
  static int GetWakeUp();
  static void ClearWakeUp();
  /// The requests counted so far were followed; one that comes later belongs to the next solve.
  static void Settle(int followed);
};

} // namespace desktop
