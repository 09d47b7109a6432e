#pragma once

#include <vector>

class AString;
class LongFileName;

/// A folder that holds what a running save takes away, with a journal, so that the save can be taken back after a
/// failure or a crash.  One area is open at a time, on the desktop's thread:
///
///     Begin(area, root) ... deletes and moves by BackupUtils ... IsWhole() ... the moment of truth ... Drop(area)
///
/// and Restore(area, root) instead of Drop before that moment, in the same process or in a later one.  Every step can
/// be repeated after it was cut short.  Many deletes and moves go quicker as a group.  The area lies on the same disk
/// as the root; what lies outside of the root is deleted as if no area were open.
class BackupArea {
public:
  /// Makes the folder and opens it; true too when it is the open one, with that root.  False when another one is open,
  /// when a link stands there, or when an unfinished save left a journal: Restore or Drop it first.
  static bool Begin(LongFileName const & area, LongFileName const & root);
  static bool IsOpen();
  /// A save that used the folder was neither restored nor dropped.
  static bool IsPending(LongFileName const & area);
  /// Adds the paths, counted from the root, of what a pending area tells of; nothing is written.
  /// False when it can't tell all.
  static bool ListTouched(LongFileName const & area, std::vector<AString> & paths);
  /// From here on deletes and moves wait, and what stands on the disk is not yet what was asked for: their lines of the
  /// journal reach the disk together, then they are done in their order.  A step about a place of one that waits does
  /// not wait with it, and neither does a copy.
  static void BeginGroup();
  /// False when a step of the group failed, as IsWhole tells then too.
  static bool EndGroup();
  /// True when all that was asked of the open area since Begin was done, and would now survive a loss of power.
  static bool IsWhole();
  /// Something of the save was not done, at this place: the open area is never whole again.
  static void MarkIncomplete(AString const & place);
  /// The first place that was told so since Begin; empty without one.
  static AString GetObstacle();
  /// Forward: what the area holds goes for good.  Closes it when it is the open one.
  static bool Drop(LongFileName const & area);
  /// Back: every file and folder as it was at Begin, the latest change first.  On a failure false, and what is left to
  /// be done can be tried again.  A damaged line of the journal is one, so is an entry whose path leads over a link:
  /// it and what was done before it stay in the area, which holds the only copies.
  static bool Restore(LongFileName const & area, LongFileName const & root);

  /// Into the open area; false without one, or when nothing stands there.  A link, a path behind one, and what overlaps
  /// the area are refused, here and in the two below.
  static bool MoveIn(LongFileName const & path);
  /// Into the open area, the original stays.  Where nothing stands that is noted: Restore removes what comes there.
  static bool CopyIn(LongFileName const & path);
  /// A move that Restore takes back; a target that is there goes into the area first.  Without an area a plain move.
  static bool Rename(LongFileName const & from, LongFileName const & to);
  /// Whether the path lies below the open area's root.
  static bool Covers(LongFileName const & path);
  /// Whether the path lies in the open area, or the area in it: then nobody else may remove it.
  static bool Overlaps(LongFileName const & path);
};
