#include "plotkit/ReadingContext.h"

#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "plotkit/SolutionPointSet.h"
#include "plotkit/TraceComponent.h"

void readingcontext::Set(SolutionPointSet const & pointSet, TraceComponent const & component) {
  std::optional<SimValueContext> const & own = component.GetSimValueContext();
  pointSet.GetISimDataExtractor()->SetSimValueContext(own ? &*own : &pointSet.GetSimValueContext());
}

void readingcontext::Set(SolutionPointSet const & pointSet) {
  pointSet.GetISimDataExtractor()->SetSimValueContext(&pointSet.GetSimValueContext());
}
