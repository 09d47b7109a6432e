// What a queue needs, taken from an open project.

#include "basekit/file/LongFileName.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/product/SolveJob.h"
#include "desktop/project/Project.h"
#include "desktop/project/Session.h"
#include "desktop/project/SourcePlace.h"
#include "desktop/report/LiveReports.h"
#include "desktop/report/ShownNumbers.h"
#include "desktop/solve/SolveQueue.h"

namespace desktop {

namespace {

SolveSite SiteOf(Session & session) {
  // The source is looked at once more: a worker would read what it is now and store it as what it was.
  auto const prepare = [&session] {
    session.CheckSourceUnchanged();
    session.BeginAutosave();
    session.Autosave();
    session.GetLiveReports().ResultsChanged();
  };
  auto const sources = [&session] {
    std::vector<JobSource> files;
    for (SourceFile const & file : session.GetProject().GetSourceFiles())
      files.push_back({PlaceOf(file, session.GetProject().GetFolder()).FilePath(), file.size, file.checksum});
    return files;
  };
  return {session.GetManager(),
          session.GetProduct(),
          session.GetProject().GetSourceFile().FilePath(),
          session.IsReadOnly(),
          prepare,
          sources,
          [&session] { session.Autosave(); },
          [&session](std::vector<SolutionVariationKey> const & points) {
            ForgetShownNumbers(session.GetManager(), points);
          }};
}

} // namespace

SolveQueue::SolveQueue(Session & session, SolveOptions const & options) : SolveQueue(SiteOf(session), options) {}

} // namespace desktop
