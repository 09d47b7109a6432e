#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"
#include "basekit/value/ValueState.h"

#include <vector>

class BaseSimDataExtractor;
class BaseSolutionManager;

/// Decides what a foreign word of an expression is to an extractor: a canned output variable before an output variable,
/// before a quantity.  Owns nothing; the list of sim values is the extractor's.
class TextResolution {
public:
  TextResolution(BaseSolutionManager const & manager, BaseSimDataExtractor & extractor,
                 std::vector<SimValue *> & simValues)
      : m_manager(manager), m_extractor(extractor), m_simValues(simValues) {}

  /// The extractor's values grow by what a product makes of the word; null when it is no quantity.
  ValueBase * ParseText(AString const & text, SimValueContext const & context);
  /// The state of a variable, however it may be defined, or of the quantity.
  ValueState StateOf(AString const & text, SimValueContext const & context) const;
  /// A variable counts only when its expression is valid in the context.
  ValueState StateInContext(AString const & text, SimValueContext const * context) const;
  /// Nothing is looked for among variables.
  ValueState StateOfQuantity(AString const & text, rep::CalculationType domain) const;

  static ValueState UnknownQuantity();

private:
  OutputVariable * FindVariable(AString const & name) const;

  BaseSolutionManager const & m_manager;
  BaseSimDataExtractor & m_extractor;
  std::vector<SimValue *> & m_simValues;
};
