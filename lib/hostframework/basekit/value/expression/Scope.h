#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/ValueState.h"

#include <span>
#include <vector>

class ValueBase;

namespace expr {

/// Points with ascending x, in SI units.
struct Dataset {
  std::span<double const> x;
  std::span<double const> y;
};

/// What a name of an expression stands for.
struct Meaning {
  enum class Kind {
    kUnknown,
    kQuantity,  ///< something that has samples, or one value, where the expression is evaluated
    kDefinition ///< a user variable: an expression of its own
  } kind = Kind::kUnknown;
  ValueState state;                 ///< of a quantity
  AString text;                     ///< of a definition
  ValueBase const * base = nullptr; ///< the object behind the name, where there is one; not owned
};

/// Says what names mean while an expression is compiled.
class IScope {
public:
  virtual ~IScope();

  virtual Meaning Find(AString const & name) const = 0;
  /// Null when there is none; the points must outlive the compiled expressions.
  virtual Dataset const * FindDataset(AString const & name) const;
  /// Names that could be meant by a wrong one, for advice in errors.
  virtual std::vector<AString> KnownNames() const;
};

} // namespace expr
