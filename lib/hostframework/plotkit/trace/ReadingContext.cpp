#include "plotkit/trace/ReadingContext.h"

#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/trace/TraceComponent.h"

void readingcontext::Set(SolutionPointSet const & pointSet, TraceComponent const & component) {
  std::optional<SimValueContext> const & own = component.GetSimValueContext();
  pointSet.GetISimDataExtractor()->SetSimValueContext(own ? &*own : &pointSet.GetSimValueContext());
}

void readingcontext::Set(SolutionPointSet const & pointSet) {
  pointSet.GetISimDataExtractor()->SetSimValueContext(&pointSet.GetSimValueContext());
}
