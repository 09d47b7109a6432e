#pragma once

#include "solutionmanager/model/BaseSolution.h"

#include <optional>

namespace desktop {

struct ImportedData;

/// The data of an imported setup: one variation without a text, whatever the design's variables say, at a version that
/// no edit changes.  So it is valid as long as it is there.  A product derives from it and makes its own variation.
///
/// The numbers lie in the solution library, in a block of their own: they share its commits, its recovery and its
/// checksums, and an autosave, which holds the design's block, does not grow by them.  The block bears no variation's
/// key, as such a key makes a setup to be solved when the library is opened.
class ImportedSolution : public BaseSolution {
public:
  static constexpr long kVersion = 0;
  static AString const kName;

  ImportedSolution(BaseSimulationSetup const & setup, long id);

  static AString BlockNameOf(long setupID);
  /// The setup of a block with such a name; nothing for other names.
  static std::optional<long> SetupOfBlock(AString const & name);
  AString GetBlockName() const;

  AString const & GetFile() const { return m_file; }
  AString const & GetSummary() const { return m_summary; }
  /// Takes what people are told, and stores it with the content; false when the library refuses it.
  bool Keep(ImportedData const & data);
  /// Takes what people are told from the library, for a design that lost it, and gives the setup's name at the time of
  /// the import; empty when the library tells nothing.
  AString ReadOrigin();

  /// Makes the variation; the data is read when it is asked for.
  void EnterVariation();
  /// The variation with its data in memory; without data when that is gone or can't be read.
  BaseSolutionVariation & Load();

  bool IsSolutionImported() const override { return true; }
  /// It holds at all values of the design's variables.
  using BaseSolution::HasSolutionData;
  bool HasSolutionData(IDesignInstance const * instance, long version) const override;
  bool HasSolutionData(AString const & variation, long version) const override;
  using BaseSolution::HasValidSolutionData;
  bool HasValidSolutionData(AString const & variation, long version) const override;
  bool NeedsToSimulate(AString const &, long) const override { return false; }

  io::ReadError DesignFileRead(io::CBlock const & block) override;
  bool DesignFileWrite(io::CBlock & block) override;

private:
  bool HasBlock() const;
  void WriteOrigin(io::CBlock & block) const;
  /// Gives the setup's name.
  AString TakeOrigin(io::CBlock const & block);

  AString m_file;
  AString m_summary;
};

/// The variation with its data in memory where there is any, of a solution of whatever kind; null without a variation.
BaseSolutionVariation * LoadVariation(BaseSolution & solution, VariationIDIndex const & index);

} // namespace desktop
