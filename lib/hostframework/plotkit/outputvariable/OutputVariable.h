#pragma once

#include "basekit/command/MUndoableObject.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/value/ContextVariable.h"

class IDesignDataExtractor;
class SimValueContext;

/// A named expression over solved quantities, design variables and other output variables.  It is active while its text
/// is bound to the quantities of one extractor in one context; nothing evaluates it otherwise.  Owned by a solution
/// manager, or by the command that took it out.
class OutputVariable : public ContextVariable, public MUndoableObject {
public:
  explicit OutputVariable(AString const & name);
  ~OutputVariable() override;

  virtual void Deactivate();
  /// The text, then the four words of the state; false, and nothing written, without a text.
  virtual bool WriteToFunc(io::CBlock_func & func) const;
  /// The state may be missing.  False, and nothing changed, for anything else.
  virtual bool ReadFromFunc(io::CBlock_func const & func, io::CBlock_func::iterator place);
  /// Units of one type differ by a factor alone.
  virtual bool IsValueStateEqualIgnoreFullUnitType(ValueState const & state) const;
  virtual bool WriteToFuncForCopy(io::CBlock_func & func) const;
  virtual bool ReadFromFuncForPaste(io::CBlock_func const & func, io::CBlock_func::iterator place);

  /// Of a variable that no manager keeps under its former name.
  using ContextVariable::SetName;

  /// Text and state; the name stays.
  void Assign(MUndoableObject const & other) override;
  OutputVariable * Clone() const override;

  /// True when the text can be bound in this context of the extractor, names being looked up in the current name
  /// space.  The extractor is left in that context.
  bool IsValid(IDesignDataExtractor * extractor, SimValueContext const * context) const;
  /// Binds the text; false, and inactive, when that fails or when it refers to a variable of the extractor's manager
  /// that is not active yet.
  bool Activate(IDesignDataExtractor * extractor, SimValueContext const * context);
  /// The variables of the extractor's manager among the words of the text, each once: what must be active before.
  /// Canned ones are not among them.
  std::vector<OutputVariable const *> GetUsedVariables(IDesignDataExtractor * extractor) const;
  bool IsActive() const { return GetBoundValue() != nullptr; }

protected:
  OutputVariable(OutputVariable const &) = default;
  OutputVariable & operator=(OutputVariable const &) = delete;

  /// An inactive variable hands the message to what its text means to the installed value parser.
  bool DoReceiveMsg(ValueMessage & message) const override;

private:
  ValueBase * CloneValueBase() const override { return new OutputVariable(*this); }
};
