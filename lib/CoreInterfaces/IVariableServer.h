#pragma once

#include "basekit/text/AString.h"

class Variable;
namespace base {
template <class Enum, int N> class EnumSet_T;
}

/// Where a server's variables are looked for.
enum class VariableServerFlag : int { AllVariables = 7 };
using VariableServerFlags = base::EnumSet_T<VariableServerFlag, 8>;

/// Knows variables by name.
class IVariableServer {
public:
  /// Null when the server does not know the name; the variable stays the server's.
  virtual Variable * ResolveVariable(AString const & name) const = 0;
  /// The default is the set of value 128.
  virtual VariableServerFlags GetVariableSearchFlags() const;
  virtual ~IVariableServer();
};
