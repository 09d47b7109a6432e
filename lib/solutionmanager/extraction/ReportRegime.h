#pragma once

#include <source_location>

class BaseSolutionManager;

/// The members of an extractor that only one of the two ways of reporting has use for.
enum class RetiredMember {
  GetValueStateFromText,
  ParseText,
  AnalyzeQuantity,
  CreateTraceComponentOfText,
  CreateTraceComponentOfTab,
  CreateTrace2D,
  CreateTrace3D,
  CreateTraces,
  CreateSolutionPointSet,
  GetAvailableTraces,
  SetUniqueSolutionPointSetName,
  AllocSolutionPointSet,
  FetchNextUniqueSolutionPointSetID,
  GetCurrentSolutionPointSet,
  GetDynamicDatasetValue,
  GetFirstSolutionPointSet,
  GetLastSolutionPointSet,
  GetFirstSolutionPointSetForEdit,
  GetLastSolutionPointSetForEdit,
  DoDataExchangeSimValueCache,
  GetReferencedSimValues,
  ReloadSolutionPointSetData,
  CleanDirtySVCaches,
  SynchronizeOneTrace,
  SynchronizeTracesForSolutionPointSet,
  SynchronizeTraces,
  SynchronizeTracesAndGetAffectedSPS,
  RemoveSolutionPointSet,
  SolutionPointSetIsUsingInstance,
  kCount
};

/// Which of the two ways of reporting holds now; asked at each call, as a desktop may switch.  What a member says when
/// it is called under the other one stands here.
class ReportRegime {
public:
  using Place = std::source_location;

  explicit ReportRegime(BaseSolutionManager const * manager) : m_manager(manager) {}

  bool AreOldReportStructuresSupported() const;
  bool IsV2Design() const;
  static bool IsReporterRewriteActive();

  /// True under old report structures; otherwise the member's text is reported, once for each member.
  bool Supports(RetiredMember member, Place place = Place::current()) const;
  /// True, with a report, on a V2 design.
  bool IsRetiredInV2(RetiredMember member, Place place = Place::current()) const;

private:
  BaseSolutionManager const * m_manager;
};
