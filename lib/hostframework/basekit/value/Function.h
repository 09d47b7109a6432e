#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/ValueState.h"

#include <cstddef>
#include <utility>
#include <vector>

/// One overload of a function that expressions know: what it takes and what it gives.  The state that stands in the
/// object itself is that of the result.  Overloads are made once and live for ever.
class Function {
public:
  Function(AString const & name, ValueState const & result, std::vector<ValueState> arguments,
           std::size_t requiredArguments)
      : m_name(name), m_result(result), m_arguments(std::move(arguments)), m_requiredArguments(requiredArguments) {}

  AString const & GetName() const { return m_name; }
  ValueState const & GetValueState() const { return m_result; }
  /// The states of all arguments in order; those that may be left out stand last.
  std::vector<ValueState> const & GetArgTypes() const { return m_arguments; }
  std::size_t GetRequiredArgCount() const { return m_requiredArguments; }

private:
  AString m_name;
  ValueState m_result;
  std::vector<ValueState> m_arguments;
  std::size_t m_requiredArguments;
};
