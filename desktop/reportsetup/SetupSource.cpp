#include "desktop/reportsetup/SetupSource.h"

#include "CoreInterfaces/IVariableNameSpaceSetupper.h"
#include "CoreInterfaces/reportkern/ISimDataExtractorForReports.h"
#include "CoreInterfaces/reportkern/ISolutionManagerForReports.h"
#include "CoreInterfaces/solution/IProductSolutionMgrForReportSetupUI.h"
#include "CoreInterfaces/solution/ISolutionReporter.h"
#include "basekit/value/ExpressionParser.h"
#include "basekit/value/Value.h"
#include "basekit/value/VariableNameSpace.h"
#include "basekit/value/expression/Error.h"
#include "desktop/Error.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "desktop/report/ReportDefinition.h"
#include "desktop/reportsetup/SetupParser.h"

#include <algorithm>
#include <vector>

namespace desktop {

namespace {

[[noreturn]] void Refuse(ReportDefinition const & report, AString const & why) {
  throw Error(ErrorKind::kUsage, L"report " + report.name + L": " + why);
}

void RefuseWithoutRewrite(Session & session, ReportDefinition const & report) {
  if (session.GetManager().AreOldReportStructuresSupported())
    Refuse(report, L"the reporter rewrite is not active; LiveReports shows reports");
  if (!dynamic_cast<IProductSolutionMgrForReportSetupUI const *>(&session.GetManager()))
    Refuse(report, L"the product has no reports under the reporter rewrite; switch it off");
}

// "Setup : Solution".
bool IsNamed(AString const & solution, ReportDefinition const & report) {
  AString const between(L" : ");
  std::size_t const end = solution.find(between);
  AString const setup = solution.substr(0, end);
  AString const name = end == AString::npos ? AString() : solution.substr(end + between.size());
  return (report.setup.empty() || AString::MatchNoCase(setup, report.setup)) &&
         (report.solution.empty() || AString::MatchNoCase(name, report.solution));
}

// Empty when all y make sense.
AString ProblemOf(SetupSource const & source, ISolutionManagerForReports const & reports,
                  ReportDefinition const & report) {
  VariableNameSpace names(true, false);
  reports.GetIVariableNameSpaceSetupper(source.solutionID)->SetupVariableNameSpace(names);
  SetupParser parser(source.view, source.context, source.reportType);
  for (AString const & y : report.y) {
    Value value(Units::kNoUnits);
    expr::Error error;
    if (!ExpressionParser::ValidateExpression(value, y, {&parser}, error))
      return L"'" + y + L"' can't be evaluated: " + error.Text();
  }
  return AString();
}

AString Unknown(ReportDefinition const & report, std::vector<AString> const & known) {
  AString there;
  for (AString const & name : known)
    there += (there.empty() ? AString() : AString(L", ")) + name;
  return L"no solution is named '" + report.setup + (report.solution.empty() ? AString() : L" : " + report.solution) +
         L"'; there are: " + (there.empty() ? AString(L"none; add a setup") : there);
}

} // namespace

SetupSource FindSetupSource(Session & session, ReportDefinition const & report) {
  RefuseWithoutRewrite(session, report);
  ProductSolutionManager const & manager = session.GetManager();
  ISolutionManagerForReports const & reports = *manager.GetISolutionManagerForReports();
  std::vector<AString> types;
  manager.GetReportTypeNames(types);
  AString problem;
  std::vector<AString> known;
  for (AString const & type : types) {
    unsigned const number = manager.GetReportType(type);
    std::vector<long> solutions;
    reports.GetAvailableSolutions(solutions, number);
    for (long const id : solutions) {
      ISimDataExtractorForReports const * const view = reports.GetISimDataExtractorForReports(id);
      if (!view || !view->IsReportTypeSupported(number))
        continue;
      AString const name = view->GetGlobalSolutionName();
      if (std::find(known.begin(), known.end(), name) == known.end())
        known.push_back(name);
      if (!IsNamed(name, report))
        continue;
      SetupSource const source{id, *view, number, SimValueContext()};
      AString const found = ProblemOf(source, reports, report);
      if (found.empty())
        return source;
      problem = problem.empty() ? found : problem;
      break; // Another report type of the same solution may know the words.
    }
  }
  Refuse(report, problem.empty() ? Unknown(report, known) : problem);
}

} // namespace desktop
