#include "plotkit/simvalue/SimValue.h"

#include "basekit/io/CBlock_func.h"
#include "plotkit/simvalue/ReferencesSimValuesMessage.h"

namespace {

bool ReadState(io::CBlock_func const & func, io::CBlock_func::iterator place, ValueState & state) {
  int words[4] = {};
  for (int & word : words)
    if (!func.QueryUnamedValues(place, word))
      return false;
  state = ValueState(static_cast<Units::FullUnitType>(words[0]), static_cast<Units::UnitType>(words[1]), words[2],
                     static_cast<val::ParameterType>(words[3]));
  return true;
}

} // namespace

SimValue::SimValue(AString const & text, SimValueContext const & context, ValueState const & state)
    : m_text(text), m_context(context), m_state(state) {}

bool SimValue::IsEqual(AString const & text, SimValueContext const & context) const {
  return m_text == text && m_context == context;
}

bool SimValue::DoReceiveMsg(ValueMessage & message) const {
  if (message.GetTag() != ReferencesSimValuesMessage::tag)
    return false;
  static_cast<ReferencesSimValuesMessage &>(message).Add(*this);
  return true;
}

io::ReadError SimValue::ReadSimValue(io::CBlock_func const & func) {
  auto place = func.begin();
  AString text;
  SimValueContext context;
  if (!func.QueryUnamedValues(place, text) || text.empty() || !context.ReadFrom(func, place))
    return io::kBadContent;
  ValueState state;
  if (place != func.end() && !ReadState(func, place, state))
    return io::kBadContent;
  m_text = text;
  m_context = context;
  m_state = state;
  return io::kNoError;
}

void SimValue::WriteSimValue(io::CBlock_func & func) const {
  func << m_text;
  m_context.WriteTo(func);
  func << static_cast<int>(m_state.fullUnit) << static_cast<int>(m_state.unitType) << m_state.thirdWord
       << static_cast<int>(m_state.parameterType);
}
