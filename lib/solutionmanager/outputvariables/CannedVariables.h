#pragma once

#include "basekit/text/AString.h"

#include <map>

class BaseSolutionManager;
class OutputVariable;

/// Output variables that products bring along, made when somebody asks for them.
class CannedVariables {
public:
  using Map = std::map<AString, OutputVariable *, AString::NoCaseLess>;

  explicit CannedVariables(Map & variables) : m_variables(variables) {}

  /// What the first extractor that knows the name says of it; null when none does.
  static OutputVariable * Create(BaseSolutionManager const & manager, AString const & name);
  OutputVariable * Find(AString const & name) const;
  /// Null when no extractor knows the name.
  OutputVariable * FindOrCreate(BaseSolutionManager const & manager, AString const & name);
  /// Frees those that no expression refers to.
  void Collect();

private:
  Map & m_variables;
};
