#pragma once

#include "basekit/value/ValueBase.h"

class AString;
class IDesignEditor;
class Variable;

/// A design's variable as a sweep holds it: edits may replace the object, and the sweep must not outlive it unawares.
class SweptVariable {
public:
  SweptVariable() = default;
  explicit SweptVariable(Variable * variable);

  /// Null when there is none, or none any more.
  Variable * Get() const { return m_reference.Get() ? m_variable : nullptr; }

  /// The variable of that name: of the editor, of the current name space, or intrinsic; null when there is none.
  static Variable * Find(AString const & name, IDesignEditor const * editor);

private:
  ValueReference m_reference;
  Variable * m_variable = nullptr;
};
