#pragma once

class AString;
class BaseSolutionManager;
class ISimDataExtractor;
class OutputVariable;
class SimValueContext;

namespace outputvariables {

/// Without extractor or context the expression need only parse, with both it must be bindable there.  The user is told
/// which words are bad.
bool IsValidExpression(BaseSolutionManager const & manager, AString const & expression, ISimDataExtractor * extractor,
                       SimValueContext const * context);
/// Each variable that this one leads to is looked into once.
bool IsValidVariable(BaseSolutionManager const & manager, OutputVariable const & variable,
                     ISimDataExtractor * extractor, SimValueContext const * context);

/// Follows the first output variable of each text, no other.  True, and the user is told, when that leads back to the
/// name or goes round in a circle of others; what is told is about the name in both cases.
bool IsCyclic(BaseSolutionManager const & manager, AString const & name, AString const & expression);

/// False, and the user is told, while something refers to the variable of that name, or when there is none.
bool IsOkToDelete(BaseSolutionManager const & manager, AString const & name);

} // namespace outputvariables
