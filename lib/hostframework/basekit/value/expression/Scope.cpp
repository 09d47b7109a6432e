#include "basekit/value/expression/Scope.h"

namespace expr {

IScope::~IScope() = default;

Dataset const * IScope::FindDataset(AString const &) const { return nullptr; }

std::vector<AString> IScope::KnownNames() const { return {}; }

} // namespace expr
