#pragma once

#include "solutionmanager/convergence/CBaseConvergenceData.h"

#include <memory>
#include <utility>
#include <vector>

/// The convergence record of one solve of one variation: one set of data, or several that a product keeps apart by an
/// index.  Index -1 is that of a single set.  A solver supplies all values and texts; nothing is computed here.
/// Copies share the sets; the last one frees them.  For an index without a set, texts are "N/A" and answers false.
class ConvergenceData {
public:
  using iterator = CBaseConvergenceData::Columns::const_iterator;

  static constexpr int kSingleSet = -1;

  /// The name is that of the record's block.
  explicit ConvergenceData(AString const & name);
  ConvergenceData(ConvergenceData const &) = default;
  ConvergenceData & operator=(ConvergenceData const &) = default;

  /// A block of another name is left alone, without an error.
  virtual io::ReadError Read(io::CBlock const & block, BaseSolutionManager const * manager);
  virtual bool Write(io::CBlock & block) const;
  /// Writes the last pass alone, where a product can.
  virtual bool WriteLastConv(io::CBlock & block) const;
  virtual ~ConvergenceData();

  AString const & GetName() const { return m_name; }
  CBaseConvergenceData * GetBaseConvergenceData(int index) const;

  // What the columns are
  void SetSetupDef(SetupConvDef const * definition, int index);
  void Initialize(AString const & requestedPasses, AString const & target, AString const & criterionLabel,
                  AString const & iterationLabel, AString const & minPasses, bool supportsCriterionDisplay,
                  AString const & passesTitle, int index);
  bool NeedDefinition(int index) const;
  bool NeedInit(int index) const;
  AString GetSetupConvDefName(int index) const;
  /// Appends the names of the columns that are shown, and whether each can be plotted.
  void GetTableColumns(std::vector<std::pair<AString, bool>> & columns, int index) const;
  ConvDef const * find(AString const & name, int index) const;
  iterator begin(int index) const;
  iterator end(int index) const;
  iterator find(ConvDef const * def, int index) const;

  // Passes, counted from 1
  void ClearData(int keepPasses, int index);
  /// Takes the values out of the row.
  void AddData(ConvValues * row, int index);
  AString GetCurrent(AString const & name, int index) const;
  bool GetCurrent(AString const & name, double & number, int index) const;
  AString GetPassData(AString const & name, int pass, int index) const;
  bool GetPassData(AString const & name, int pass, double & number, int index) const;
  /// The last values of the columns that the labels name.
  AString GetCurrentIter(int index) const { return GetCurrent(GetIterationLabel(index), index); }
  AString GetCurrentCriterion(int index) const { return GetCurrent(GetCriterionLabel(index), index); }

  // Targets and labels
  AString GetMaximumIter(int index) const;
  AString GetMinimumIter(int index) const;
  AString GetTargetCriterion(int index) const;
  AString GetCriterionLabel(int index) const;
  AString GetIterationLabel(int index) const;
  AString GetPassesTitle(int index) const;
  AString GetTargetConsecPasses(int index) const;
  AString GetCurrentConsecPasses(int index) const;
  bool SupportsIsConverged(int index) const;
  bool GetIsConverged(int index) const;
  bool SupportsCriterionDisplay(int index) const;
  void SetRequestedIter(AString const & passes, int index);
  void SetMinimumIter(AString const & passes, int index);
  void SetTargetCriterion(AString const & target, int index);
  void SetCriterionLabel(AString const & label, int index);
  void SetTargetConsecPasses(AString const & passes, int index);
  void SetCurrentConsecPasses(AString const & passes, int index);
  /// The set then supports the answer, whatever it is.
  void SetIsConverged(bool converged, int index);

private:
  template <AString CBaseConvergenceData::*text> AString GetText(int index) const;
  template <bool CBaseConvergenceData::*flag> bool GetFlag(int index) const;
  template <AString CBaseConvergenceData::*text> void SetText(AString const & value, int index);
  CBaseConvergenceData & SetFor(int index, SetupConvDef const * definition);

  AString m_name;
  std::map<int, CBaseConvergenceData *> m_sets;
  /// Owns the sets of all copies.
  std::shared_ptr<std::vector<std::unique_ptr<CBaseConvergenceData>>> m_owned;
};
