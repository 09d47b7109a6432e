#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/units/Units.h"

#include <utility>
#include <vector>

class BaseSolution;
class Trace;

namespace desktop {

class Session;
struct ReportDefinition;

/// What a report's definition means in a project as it is now.  Solution and traces are the project's; what can't be
/// made is told in one line for people.
struct ReportCurves {
  BaseSolution * solution = nullptr;
  AString x;                   ///< empty where curves are numbers without an axis
  std::vector<AString> over;   ///< with x, where that is a variable of the design, last
  std::vector<Trace *> traces; ///< as many as the definition has y; null for one that makes no sense now
  AString unseenAxis;          ///< of samples, where neither x runs over them nor the definition names one
  /// By y: what it names runs over other samples than the curves here.
  std::vector<bool> hasOtherSamples;
  std::vector<std::pair<AString, AString>> given; ///< name and value of variables that the definition stands at
  /// By y: units that the expression's text tells and its state doesn't, as of a ranged function of a curve with units.
  std::vector<Units::FullUnitType> units;
  std::vector<AString> problems;
  bool areWordsWrong = false; ///< some problem is one of the definition's words, and not that nothing is solved
  std::vector<AString> notes; ///< of what is shown, and is another thing than one may think
};

/// What curves run over where a definition doesn't say.
enum class Axis { kOwn, kNone };

/// Equal curves are made once: reports share them.
ReportCurves MakeCurves(Session & session, ReportDefinition const & report, Axis axis = Axis::kOwn);
/// What would be told of the definition if it were shown now, as names are misspelt or not there yet: one line each.
/// Of quantities and samples nothing is told before anything is solved.
std::vector<AString> FindProblems(Session & session, ReportDefinition const & report);
/// Null without a setup or solution of that name; case does not count.
BaseSolution * FindSolution(Session & session, ReportDefinition const & report);

} // namespace desktop
