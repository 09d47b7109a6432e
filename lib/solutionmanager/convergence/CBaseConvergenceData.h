#pragma once

#include "basekit/io/ReadError.h"
#include "basekit/text/AString.h"
#include "solutionmanager/convergence/ConvValues.h"

#include <map>

class BaseSolutionManager;
class ConvDef;
class SetupConvDef;
namespace io {
class CBlock;
class CBlockFuncPtr;
} // namespace io

/// The columns of a kind of setup as a manager knows them, or null.  The body stands with the manager, so that
/// convergence records need not know the model.
SetupConvDef const * FindConvDefsForSetup(BaseSolutionManager const * manager, AString const & setupName);

/// One set of a convergence record: a column of values for each definition, a pass being the same place in each, and
/// the targets and labels that are shown around them.  Definitions are not owned.
class CBaseConvergenceData {
public:
  using Columns = std::map<ConvDef const *, ConvValues>;

  explicit CBaseConvergenceData(SetupConvDef const * definition) : mDef(definition) {}
  CBaseConvergenceData(CBaseConvergenceData const &) = delete;
  CBaseConvergenceData & operator=(CBaseConvergenceData const &) = delete;
  virtual ~CBaseConvergenceData();

  /// Passes are added to those that are there.  kNoDefinition when neither this set nor the manager knows the columns.
  io::ReadError Read(io::CBlock const & block, BaseSolutionManager const * manager);
  /// False without a definition.
  bool Write(io::CBlock & block) const;

  SetupConvDef const * GetDefinition() const { return mDef; }
  /// Columns of the same name keep their values; new ones are filled up with invalid values.
  void SetDefinition(SetupConvDef const * definition);
  /// Makes a column for each definition; without a list of definitions an assertion, and false.
  bool MakeColumns();
  void ClearData(int keepPasses);
  /// Moves the row's values into the columns.
  void AddData(ConvValues & row);

  ConvDef const * FindDef(AString const & name) const;
  /// The value of a pass, counted from 1, or of the last one; null when there is none.
  ConvValue const * FindPass(AString const & name, int pass) const;
  ConvValue const * FindLast(AString const & name) const;

private:
  friend class ConvergenceData;

  ConvValues const * FindColumn(AString const & name) const;
  Columns TakeOutColumns();
  void FillColumn(ConvDef const & def, Columns const & old, int passes);
  void ReadTexts(io::CBlock const & block);
  void ReadPasses(io::CBlock const & block);
  void WritePasses(io::CBlock & block) const;

  bool mNeedInit = true;
  AString mRequestedPasses = L"N/A";
  AString mMinimumPasses = L"N/A";
  AString mTargetCriterion = L"N/A";
  AString mCriterionLabel = L"N/A";
  AString mIterationLabel = L"N/A";
  AString mPassesTitle;
  AString mTargetConsecPasses = L"N/A";
  AString mCurrentConsecPasses = L"N/A";
  bool mSupportsIsConverged = false;
  bool mIsConverged = false;
  bool mSupportsCriterionDisplay = true;
  Columns mData;
  SetupConvDef const * mDef;
};
