#include "desktop/design/KnownVariable.h"

#include "basekit/value/Variable.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"

namespace desktop {

AString KnownVariable(Design const & design, AString const & name, AString const & where) {
  if (Variable const * const variable = design.FindVariable(name))
    return variable->GetName();
  AString known;
  for (Variable const * variable : design.GetVariables())
    known += (known.empty() ? L"" : L", ") + variable->GetName();
  throw Error(ErrorKind::kUsage, where + L": the design has no variable '" + name + L"'; " +
                                     (known.empty() ? AString(L"it has none at all") : L"it has: " + known));
}

} // namespace desktop
