#pragma once

#include "basekit/io/CBlock.h"
#include "basekit/text/AString.h"

#include <vector>

class LongFileName;

namespace desktop {

class ProductSolutionManager;

/// What a file of measured data was read into, before any project knows of it.
struct ImportedData {
  AString file;    ///< its path, as people are told of it
  AString summary; ///< one line for people: "2 ports, 201 points from 1e+07 to 2e+09 Hz, 50 ohm"
  /// One line each, for people: what was assumed or left out, what does not go with the design.
  std::vector<AString> notices;
  /// The items of a variation's data block, as the product's variations read them; the block's name does not count.
  io::CBlock content;
};

/// What a product adds that takes data from files in beside what it solves.  Reached by a cross-cast from
/// IDesktopProduct.  Its manager makes the solutions that such data gets: see
/// ProductSolutionManager::CreateImportedSolution.
class IImportProduct {
public:
  virtual ~IImportProduct() = default;
  /// Of one line, for people: "Touchstone files, which end in .s1p, .s2p and so on".
  virtual AString GetImportableFiles() const = 0;
  /// Whether the name is one that such files have; nothing is read.
  virtual bool IsImportable(LongFileName const & file) const = 0;
  /// Reads a file whole, and compares it with the design, whose source file is given; nothing changes.  False with a
  /// one-line error that names file, place, thing and remedy.
  virtual bool ReadImport(LongFileName const & file, LongFileName const & source, ImportedData & data,
                          AString & error) const = 0;
};

} // namespace desktop
