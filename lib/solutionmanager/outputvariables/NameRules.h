#pragma once

class AString;
class BaseSolutionManager;
class DesignExpressions;

namespace outputvariables {

/// A name is what the expression language itself reads as one foreign word, and no quantity.  The user is told why a
/// text is none.
bool IsValidName(BaseSolutionManager const & manager, DesignExpressions const & expressions, AString const & name,
                 bool existingNameIsError);

} // namespace outputvariables
