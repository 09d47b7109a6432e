#include "desktop/study/StudyForecast.h"

#include "desktop/design/Design.h"
#include "desktop/project/Session.h"
#include "desktop/study/Study.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace desktop {
namespace {

using Texts = std::set<AString>;

// A look-up by text may enter a new variation, so those that are there are walked.
Texts ValidIn(BaseSolution const & solution) {
  Texts valid;
  for (auto const & [index, variation] : solution.GetVariations())
    if (variation->IsVariationValid())
      valid.insert(variation->GetDesignVariationKey());
  return valid;
}

// Of a setup is valid what is so in all its solutions.
Texts ValidIn(BaseSimulationSetup const & setup) {
  Texts valid;
  bool isFirst = true;
  for (auto const & [id, solution] : setup.GetSolutions()) {
    Texts const here = ValidIn(*solution);
    Texts both;
    std::set_intersection(valid.begin(), valid.end(), here.begin(), here.end(), std::inserter(both, both.end()));
    valid = isFirst ? here : both;
    isFirst = false;
  }
  return valid;
}

} // namespace

RequestedPoints ForecastStudy(Session & session, std::vector<BaseSimulationSetup *> const & setups,
                              Study const & study) {
  CheckStudySize(study, setups.size());
  Texts points;
  for (std::size_t i = 0; i < study.Size(); ++i)
    points.insert(session.GetDesign().GetVariation(study.At(i)));
  RequestedPoints forecast;
  forecast.points = points.size() * setups.size();
  forecast.repeated = (study.Size() - points.size()) * setups.size();
  for (BaseSimulationSetup const * setup : setups) {
    Texts const valid = ValidIn(*setup);
    forecast.alreadyValid += static_cast<std::size_t>(
        std::count_if(points.begin(), points.end(), [&valid](AString const & point) { return valid.contains(point); }));
  }
  return forecast;
}

} // namespace desktop
