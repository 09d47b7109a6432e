#pragma once

#include "basekit/io/ReadError.h"
#include "basekit/text/AString.h"
#include "basekit/value/ValueBase.h"
#include "plotkit/simvalue/SimValueContext.h"

namespace io {
class CBlock_func;
}

/// A solved quantity as expressions refer to it: a text that the product understands, in a context.  An extractor owns
/// it, and may delete it while nothing refers to it.
class SimValue : public ValueBase {
public:
  SimValue() = default;
  SimValue(AString const & text, SimValueContext const & context, ValueState const & state = ValueState());

  AString GetText() const override { return m_text; }
  SimValueContext const & GetSimValueContext() const { return m_context; }
  ValueState GetValueState() const override { return m_state; }
  void SetValueState(ValueState const & state) { m_state = state; }
  bool IsEqual(AString const & text, SimValueContext const & context) const;

  bool OKtoDelete() const { return !IsReferenced(); }

  /// The function holds the text, the eight words of the context and the four of the state, the last may be missing.
  /// kBadContent, and nothing changed, for anything else.
  virtual io::ReadError ReadSimValue(io::CBlock_func const & func);
  virtual void WriteSimValue(io::CBlock_func & func) const;

protected:
  /// Adds itself to a ReferencesSimValuesMessage.
  bool DoReceiveMsg(ValueMessage & message) const override;

private:
  ValueBase * CloneValueBase() const override { return new SimValue(*this); }

  AString m_text;
  SimValueContext m_context;
  ValueState m_state;
};
