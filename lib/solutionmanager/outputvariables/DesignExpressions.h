#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/Value.h"
#include "basekit/value/VariableNameSpace.h"

#include <vector>

class BaseSolutionManager;
class IValueParser;

/// Reads the texts of output variables in the design's variable name space, which is the current one for the span of
/// its life, with the parsers of the design's solutions.
class DesignExpressions {
public:
  explicit DesignExpressions(BaseSolutionManager const & manager);

  std::vector<IValueParser *> const & GetParsers() const { return m_parsers; }
  /// The words of a text that are no variables of the design.
  std::vector<AString> GetAlienLabels(AString const & text) const;
  bool Validate(AString const & text) { return Validate(text, m_parsers); }
  bool Validate(AString const & text, std::vector<IValueParser *> const & parsers);
  /// Of the text that was validated last.
  ValueState GetState() const { return m_scratch.GetValueState(); }

private:
  VariableNameSpace m_nameSpace{true, true, false};
  std::vector<IValueParser *> m_parsers;
  Value m_scratch{Units::kNoUnits};
};
