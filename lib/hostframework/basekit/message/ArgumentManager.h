#pragma once

#include "basekit/text/AString.h"

#include <vector>

/// The arguments of a message, in order, as texts.
class ArgumentManager {
public:
  void AddArg(AString const & text) { m_arguments.push_back(text); }
  void AddArg(wchar_t const * text) { m_arguments.emplace_back(text); }
  void AddArg(long number);
  void AddArg(int number) { AddArg(static_cast<long>(number)); }
  /// The shortest text that reads back exactly.
  void AddArg(double number);

  std::vector<AString> const & GetArgs() const { return m_arguments; }

private:
  std::vector<AString> m_arguments;
};
