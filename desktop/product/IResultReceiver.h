#pragma once

#include "basekit/text/AString.h"

#include <map>
#include <optional>
#include <vector>

namespace io {
class CBlock;
}

namespace desktop {

/// A file or a number that a solution keeps for a point at its present version.
struct StoredResult {
  AString store; ///< its keyword
  std::optional<double> number{};
  std::optional<long> value{}; ///< without one it is a file
  AString path{};              ///< full; empty for a file that should be there and is not
  AString savedPath{};         ///< the saved file: the same one, another one, or empty for none

  bool IsMissing() const { return !value && path.empty() && savedPath.empty(); }
  bool IsSaved() const { return !savedPath.empty(); }
  bool IsUnsaved() const { return !value && !path.empty() && path != savedPath; }
};

/// What a solution adds whose solves deliver more than a data block: files and numbers that go into mirrored stores.
/// Reached by a cross-cast from BaseSolution.  A point that is acknowledged has what was delivered with it: files stand
/// under their working names before its block is stored, and the block holds the record of them, so that a session that
/// died before its design was written loses none.
class IResultReceiver {
public:
  virtual ~IResultReceiver() = default;
  /// Writes the files that a worker delivered (ResultExtras) and fills the record for the point's block.  A file is the
  /// old or the new one, whole.  Throws Error of kind kStorage, and what it had written is gone again.
  virtual void Receive(AString const & variation, long version, io::CBlock const & extras, io::CBlock & record) = 0;
  /// The point's block is stored: the stores' working view has what the record tells.
  virtual void Accept(AString const & variation, long version, io::CBlock const & record) = 0;
  /// The point's block could not be stored: what no view names is removed.
  virtual void Withdraw(AString const & variation, long version, io::CBlock const & record) = 0;
  /// After a crash, for a point whose block came back: enters what the working view lacks.  The number of files that
  /// are not there any more.
  virtual int TakeUp(AString const & variation, long version, io::CBlock const & record) = 0;
  /// Variations have other texts now (former, new): what was stored for them goes along, saved files as copies, since
  /// a discard goes back to the former names.
  virtual void TextsChanged(std::map<AString, AString> const & texts) = 0;
  /// What is kept for a variation; with the record of its block also files that are not there any more.
  virtual std::vector<StoredResult> ListResults(AString const & variation, io::CBlock const * record) = 0;
};

} // namespace desktop
