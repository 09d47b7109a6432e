#pragma once

#include "basekit/value/ExpressionValue.h"
#include "basekit/value/VariableNameSpace.h"
#include "basekit/value/VariableValues.h"
#include "desktop/reportsetup/SetupParser.h"
#include "desktop/reportsetup/SetupSource.h"
#include "desktop/reportsetup/SetupTable.h"
#include "solutionmanager/extraction/NameSpaceSetup.h"

#include <memory>
#include <set>

class IProgressMonitor;
class ISolvedColumns;
class SweepBase;

namespace desktop {

class Design;
class Session;
struct ReportDefinition;

/// One report on the way to its table.  Names are those of its making, which is refused with an Error of kind kUsage
/// where something is not there.
class SetupShowing {
public:
  SetupShowing(Session & session, ReportDefinition const & report);
  SetupTable Run(IProgressMonitor * progress);

private:
  /// An expression with its column.
  struct Curve {
    AString title;
    std::shared_ptr<ExpressionValue const> expression;
    ReportTable::Column column;
  };

  [[noreturn]] void Refuse(AString const & why) const;
  void AddVariable(AString const & name);
  void AddVariables();
  void GoToVariation();
  AString DefaultAxis() const;
  void AddCurve(ReportTable::Column::Role role, AString const & title, AString const & text);
  bool IsXVariable() const;

  /// Calls at each combination of the values of the variables that run, the first changing slowest, until that gives
  /// false.
  template <class Visit> bool ForEachPoint(std::size_t variable, VariableValues & values, Visit const & visit) const;
  void AddPoint(SetupTable & table, VariableValues const & values, bool isThere);
  std::vector<SetupTable::Cell> VariableCells(VariableValues const & values) const;
  void AddRows(SetupTable & table, VariableValues const & values);

  Session & m_session;
  Design & m_design;
  ReportDefinition const & m_report;
  SetupSource m_source;
  ISolvedColumns const & m_columns;
  std::vector<SweepBase const *> m_over;
  VariableValues m_values; ///< of all variables, where the report stands
  VariableNameSpace m_names;
  SetupParser m_parser;
  ValueParserSpan m_span;
  std::vector<Curve> m_curves; ///< x, where it is no variable, and the y
  std::set<AString> m_told;
};

} // namespace desktop
