#pragma once

#include "basekit/io/CBlock.h"
#include "basekit/text/AString.h"

#include <optional>

namespace desktop {

/// What a job delivers beside the data of its point, as it travels in the job's result: text files and numbers for the
/// stores of the solution, known by the stores' keywords.  A runner fills one and appends it to the result; the desktop
/// takes it out before the point's block is stored.
class ResultExtras {
public:
  static AString const kBlockName;
  /// The name of the record in a point's block, see IResultReceiver.
  static AString const kRecordName;

  /// The extension, ".s2p", replaces that of the store for all files of the version.
  void AddFile(AString const & store, AString const & content, AString const & extension = AString());
  /// The file of one number, such as a frequency.
  void AddFile(AString const & store, double number, AString const & content);
  void AddValue(AString const & store, long value);
  void AppendTo(io::CBlock & result) const;

  /// One item as a receiver reads it.
  struct Item {
    AString store;
    std::optional<double> number;
    std::optional<long> value; ///< without one it is a file
    AString content;
    AString extension;
    AString path; ///< of a record: where the file stands, from the root of the stores
  };
  static std::vector<Item> ItemsOf(io::CBlock const & block);
  static void AppendFile(io::CBlock & record, AString const & store, std::optional<double> number,
                         AString const & path);
  static void AppendValue(io::CBlock & record, AString const & store, long value);

private:
  io::CBlock m_block{kBlockName};
};

} // namespace desktop
