#include "solutionmanager/extraction/ReportRegime.h"

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IKitDesktop.h"
#include "basekit/diag/Assert.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <array>

namespace {

using Sites = std::array<diag::AssertSite, static_cast<std::size_t>(RetiredMember::kCount)>;

/// What a member says under the reporter rewrite.
char const * TextOf(RetiredMember member) {
  switch (member) {
  case RetiredMember::GetValueStateFromText:
  case RetiredMember::ParseText:
    return "!\"Not supported in new reporter rewrite!\"";
  case RetiredMember::AnalyzeQuantity:
    return "!\"Should be going directly to the OutputVariablesModule/Mgr!\"";
  case RetiredMember::CreateTraceComponentOfText:
  case RetiredMember::CreateTraceComponentOfTab:
  case RetiredMember::CreateTrace2D:
  case RetiredMember::CreateTrace3D:
  case RetiredMember::CreateTraces:
  case RetiredMember::CreateSolutionPointSet:
  case RetiredMember::GetAvailableTraces:
    return "!\"Not supported, use new reportsetupmodule for this!\"";
  case RetiredMember::SetUniqueSolutionPointSetName:
    return "!\"Not supported, use new reportsetupmodule!\"";
  case RetiredMember::RemoveSolutionPointSet:
  case RetiredMember::SolutionPointSetIsUsingInstance:
    return "!\"Not supported with new reporter rewrite!\"";
  default:
    return "!\"Should just not be calling this. Done differently in reporter rewrite\"";
  }
}

void Report(Sites & sites, RetiredMember member, char const * text, ReportRegime::Place const & place) {
  sites[static_cast<std::size_t>(member)].Report(place.file_name(), static_cast<int>(place.line()), text);
}

} // namespace

bool ReportRegime::AreOldReportStructuresSupported() const {
  return m_manager && m_manager->AreOldReportStructuresSupported();
}

bool ReportRegime::IsV2Design() const {
  IDesign const * const design = m_manager ? m_manager->GetIDesign() : nullptr;
  return design && design->IsV2Design();
}

bool ReportRegime::IsReporterRewriteActive() {
  IKitDesktop const * const desktop = GetIKitDesktop();
  return desktop && desktop->IsReportRewriteEnabled();
}

bool ReportRegime::Supports(RetiredMember member, Place place) const {
  static Sites s_sites;
  bool const isSupported = AreOldReportStructuresSupported();
  if (!isSupported)
    Report(s_sites, member, TextOf(member), place);
  return isSupported;
}

bool ReportRegime::IsRetiredInV2(RetiredMember member, Place place) const {
  static Sites s_sites;
  bool const isV2 = IsV2Design();
  if (isV2)
    Report(s_sites, member, "!\"Should just not be calling this. Done differently in V2\"", place);
  return isV2;
}
