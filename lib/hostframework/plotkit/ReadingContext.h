#pragma once

class SolutionPointSet;
class TraceComponent;

/// In which context the extractor of a point set reads words, which it does whenever an expression is bound, or bound
/// anew because a variable of it was defined otherwise.
namespace readingcontext {

/// As the component's words are meant: in the context that it was told, else in the set's.
void Set(SolutionPointSet const & pointSet, TraceComponent const & component);
/// In the set's.
void Set(SolutionPointSet const & pointSet);

} // namespace readingcontext
