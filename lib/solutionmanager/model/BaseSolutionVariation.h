#pragma once

#include "basekit/io/ReadError.h"
#include "basekit/text/AString.h"

class BaseSolution;
class KelvroCommand;
class SolutionVariationKey;
namespace io {
class CBlock;
}

/// The solved data of one solution at one design variation and one version.  This base holds identity and validity; a
/// product derives from it and keeps the data, in memory and in its own part of the variation's block.  Owned by its
/// solution; its version never changes.
class BaseSolutionVariation {
public:
  /// A version of id::invalidID becomes the solution's current one.
  BaseSolutionVariation(BaseSolution * solution, AString const & variation, long version);
  BaseSolutionVariation(BaseSolutionVariation const &) = default;
  BaseSolutionVariation & operator=(BaseSolutionVariation const &) = default;

  virtual ~BaseSolutionVariation() = default;
  /// A product reads its own items after calling this one.
  virtual io::ReadError ReadVariationDataBlock(io::CBlock const & block);
  virtual bool WriteVariationDataBlock(io::CBlock & block) const;
  virtual io::ReadError LoadInstanceData();
  /// Whether data is in memory.  A product must override it.
  virtual bool HasSolutionData() const;
  /// Releases the product's memory; the library keeps the data.
  virtual bool ClearInstanceMemoryData();
  /// Deletes all versions of this variation's text from the solution.
  virtual void DeleteMe(KelvroCommand * command);
  virtual void NonUndoableInvalidate();
  /// Passes the flag on to the solution too.
  virtual void ResetOverrideIsValid(bool overrideIsValid);

  AString const & GetDesignVariationKey() const { return m_DesignVariationKey; }
  long GetVersionID() const { return m_VersionID; }
  BaseSolution * GetBaseSolution() const { return m_Solution; }
  SolutionVariationKey GetSolutionVariationKey() const;
  bool IsVariationValid() const;

private:
  BaseSolution * m_Solution;
  long m_VariationDataID = -1;
  long m_VersionID;
  AString m_DesignVariationKey;
  bool m_OverrideIsValid = false;
};
