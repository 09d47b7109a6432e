#pragma once

#include "desktop/product/SourceDescription.h"
#include "desktop/project/SourceFiles.h"

namespace desktop {

/// What the source said when the project last read it: a later reload tells by it what the source changed from what the
/// user changed here.
struct SourceBase {
  struct Setup {
    SourceSetup said;
    /// Of the setup that was made from it; it may have another name by now, or be deleted.
    long id = -1;
  };

  /// Never empty: where the product has none it is made of the files' checksums.
  AString fingerprint;
  /// When the project read it, for people: "2026-03-01 14:05:09 UTC"; empty where that is not known.
  AString date;
  std::vector<SourceVariable> variables;
  std::vector<Setup> setups;

  /// Read now; the setups come without IDs.
  static SourceBase Of(SourceDescription const & description, SourceFiles const & files);
};

void WriteSourceBase(SourceBase const & base, io::CBlock & block);
/// False when the block is not what the writer made.
bool ReadSourceBase(io::CBlock const & block, SourceBase & base);

} // namespace desktop
