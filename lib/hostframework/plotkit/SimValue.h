#pragma once

#include "basekit/io/ReadError.h"
#include "basekit/text/AString.h"
#include "basekit/value/ValueBase.h"
#include "plotkit/SimValueContext.h"

namespace io {
class CBlock_func;
}

/// A solved quantity as expressions refer to it: a text that the product understands, in a context.  An extractor owns
/// it; whoever keeps a pointer to it counts as a reference, and a value without one may be deleted.
class SimValue : public ValueBase {
public:
  SimValue() = default;
  SimValue(AString const & text, SimValueContext const & context, ValueState const & state = ValueState());
  /// A copy starts without references.
  SimValue(SimValue const & other);
  SimValue & operator=(SimValue const & other);

  AString const & GetText() const { return m_text; }
  SimValueContext const & GetSimValueContext() const { return m_context; }
  ValueState GetValueState() const override { return m_state; }
  void SetValueState(ValueState const & state) { m_state = state; }
  bool IsEqual(AString const & text, SimValueContext const & context) const;

  void AddReference() const { ++m_references; }
  void RemoveReference() const { --m_references; }
  bool OKtoDelete() const { return m_references == 0; }

  /// The function holds the text, the eight words of the context and the four of the state, the last may be missing.
  /// kBadContent, and nothing changed, for anything else.
  virtual io::ReadError ReadSimValue(io::CBlock_func const & func);
  virtual void WriteSimValue(io::CBlock_func & func) const;

private:
  ValueBase * CloneValueBase() const override { return new SimValue(*this); }

  AString m_text;
  SimValueContext m_context;
  ValueState m_state;
  mutable int m_references = 0;
};
