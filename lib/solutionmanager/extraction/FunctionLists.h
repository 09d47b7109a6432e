#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/ValueState.h"

#include <vector>

/// Which functions a kind of report offers for a quantity of a state.  The lists are appended to; their size comes
/// back.
class FunctionLists {
public:
  FunctionLists(std::vector<AString> & names, ValueState const & state) : m_names(names), m_state(state) {}

  /// Functions of the quantity, or of a column of it, that give this type.
  int AddConversions(val::ParameterType result);
  int AddForXYPlot();
  int AddForXYStackedPlot();
  int AddForPolarPlot();
  int AddForDataTable();

private:
  val::ParameterType BasicType() const { return postp::GetBasicParamType(m_state.parameterType); }
  void AddNoFunction();

  std::vector<AString> & m_names;
  ValueState const & m_state;
};
