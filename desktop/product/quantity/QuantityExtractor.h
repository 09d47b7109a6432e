#pragma once

#include "desktop/product/quantity/KnownCatalogue.h"
#include "desktop/product/quantity/SolvedVariations.h"
#include "plotkit/simvalue/IQuestionData.h"
#include "plotkit/simvalue/ISolvedColumns.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"

#include <map>
#include <memory>
#include <optional>

class BaseSolutionVariation;

namespace desktop {

class ISolvedQuantities;
class VariationInMemory;
struct LoadedQuantities;
struct QuantityColumn;
struct QuestionUnderWay;

/// Base of the extractors of products whose quantities are columns over a variable, or single numbers, of each
/// variation.  A product says which quantities there are (a catalogue) and gives the numbers of one variation that is
/// in memory; sweeps, states, names, contexts, loading and columns follow from these two.
///
/// Data is that of the solution's version with data.  A variation that is loaded for a report is given up again
/// afterwards, unless it was in memory before; in a question at its end.
class QuantityExtractor : public BaseSimDataExtractor, public ISolvedColumns, public IQuestionData {
public:
  QuantityExtractor(BaseSolutionManager * manager, BaseSolution * solution);
  ~QuantityExtractor() override;

  /// As known from the nominal variation, where that is solved, or another one; valid until data comes or goes.  While
  /// there are no point sets, that of a question is known from its own variation, and valid until its end.
  IQuantityCatalogue const & GetCatalogue() const;
  /// What is solved is another thing now, or known better, though no version tells it; what a project file told is not
  /// believed any more either.
  void ForgetCatalogue();
  /// While a design is read: what was asked for before all of it was known.  What the project file told stays.
  void ForgetMadeCatalogue();
  /// Null for an unknown number.
  QuantityReportType const * FindReportType(unsigned number) const;

  // IDesignDataExtractor
  bool IsSupportedReportTypes(std::vector<unsigned> const & reportTypes) const override;
  using BaseSimDataExtractor::GetSweeps;
  /// The axis of the report type, and each variable of the design over the values that are solved.
  int GetSweeps(std::vector<SweepBase *> & sweeps, unsigned reportType, SimValueContext const * context,
                rep::DisplayType displayType, bool flag) const override;
  using BaseSimDataExtractor::GetCategoryNames;
  int GetCategoryNames(std::vector<AString> & names, unsigned reportType, rep::DisplayType displayType, int domain,
                       AString const * filter) const override;
  int GetQuantityNames(std::vector<AString> & names, AString const & category, unsigned reportType,
                       rep::DisplayType displayType, SimValueContext const & context) const override;
  ValueState GetQuantityType(AString const & text, int domain) const override;
  bool HasContexts(unsigned reportType) const override;
  AString GetContextUILabel(unsigned reportType) const override;
  bool GetContexts(std::vector<SimValueContext> & contexts, unsigned reportType) const override;
  long GetContextID(SimValueContext const & context) const override;
  AString GetContextName(SimValueContext const & context) const override;

  // ISimDataExtractor
  /// Expressions may name intrinsic variables, which axes are.
  bool HasExtractorOption(int option) const override { return option == kSearchIntrinsicVariables; }
  using BaseSimDataExtractor::GetSweep;
  SweepBase * GetSweep(AString const & name) const override;
  /// Over all values that the axis of that name has.
  Sweep * CreateSpecialSweep(AString const & name, val::ParameterType type, Units::FullUnitType units) const override;
  bool LoadSolvedData(VariableValues const & first, VariableValues const & second,
                      std::vector<unsigned> const & reportTypes,
                      std::map<unsigned, std::vector<AString>> const & quantities,
                      IProgressMonitor * progress) override;
  void FinishLoadingSolvedData() override;
  void DoGarbageCollection(std::set<Trace *> const & tracesInUse) override;

  // BaseSimDataExtractor
  /// With what is known of the quantities, so that reports come back without any data being read; they give no sweeps,
  /// as these follow from what is solved.
  bool DesignFileWrite(io::CBlock & block) override;
  io::ReadError DesignFileRead(io::CBlock const & block) override;
  SimValue * CreateSimValue(AString const & text, SimValueContext const & context) override;
  SimValue * CreateSimValue() override;

  // ISolvedColumns
  bool IsAxis(AString const & variable) const override;
  std::size_t GetSampleCount() const override;
  bool GetVariableColumn(AString const & variable, std::vector<double> & values) const override;
  bool GetSimValueColumn(SimValue const & value, std::vector<double> & numbers) const override;
  bool GetSimValueColumn(SimValue const & value, std::vector<AComplex<double>> & numbers) const override;

  // IQuestionData
  void BeginQuestion(VariableValues const & variation) override;
  void EndQuestion() override;

protected:
  /// What MakeCatalogue made; a variation is read for it where the project file told what reports need.
  IQuantityCatalogue const & GetMadeCatalogue() const;
  /// Of a variation that is in memory; null when nothing is solved.
  virtual std::unique_ptr<IQuantityCatalogue> MakeCatalogue(BaseSolutionVariation const * solved) const = 0;
  /// Refers to the variation; null when that has no data that can be read.
  virtual std::unique_ptr<ISolvedQuantities> OpenQuantities(BaseSolutionVariation const & solved) const = 0;
  /// One for each axis and each variable of the design that is solved for; those that there are stay the same objects.
  void CreateDefaultSweeps(bool flag) override;
  bool ClearSweepsOnDesignFileRead() override;

private:
  static constexpr int kSearchIntrinsicVariables = 4;

  static bool IsAxisOf(QuantityReportType const & type, AString const & name);
  void RefreshSweeps() const;
  void SetAxisSweeps();
  bool HasAxis(AString const & name, unsigned reportType) const;
  std::vector<double> AxisValues(AString const & axis) const;
  Variable * AxisVariable(QuantityReportType const & reportType);
  Sweep * SweepOver(Variable & variable, Units::FullUnitType units);
  std::vector<Variable *> DesignVariables() const;
  void AddNominalValues(VariableValues & values) const;
  std::unique_ptr<IQuantityCatalogue> MakeCatalogueOf(AString const & variation) const;
  std::unique_ptr<IQuantityCatalogue> MakeCatalogueOfData() const;
  std::unique_ptr<IQuantityCatalogue> MakeCatalogueOfQuestion(std::optional<AString> const & nominal) const;
  void RefreshVariations() const;
  io::ReadError ReadWithoutPointSets(io::CBlock const & block);
  void ReadCatalogue(io::CBlock const & block);
  void ReadInstances(io::CBlock const & block);
  /// The text at the version with data, which is empty in a design without variables; nothing when it is not solved.
  std::optional<AString> FindSolved(VariableValues const & values) const;
  /// Null when there is no data that can be read.
  std::unique_ptr<VariationInMemory> Bring(AString const & variation) const;
  unsigned ChooseReportType(std::vector<unsigned> const & reportTypes) const;
  bool ChooseSamples();
  bool TakeColumn(SimValue const & value, QuantityColumn & column) const;

  mutable SolvedVariations m_variations;
  mutable std::unique_ptr<KnownCatalogue> m_catalogue;
  /// What the catalogue was made from: a version, and how many variations there were when it had no data.
  mutable long m_catalogueVersion = id::invalidID;
  mutable int m_catalogueSize = -1;
  std::map<AString, std::unique_ptr<Variable>, AString::NoCaseLess> m_axisVariables;
  mutable bool m_sweepsAreCurrent = false;
  bool m_axisSweepsAreCurrent = false; ///< counts where the others are
  std::unique_ptr<LoadedQuantities> m_loaded;
  std::unique_ptr<QuestionUnderWay> m_question;
};

} // namespace desktop
