#pragma once

#include <map>
#include <optional>

class BaseSolutionManager;
class OutputVariable;

/// The output variables that one question has opened so far, with what came of it.
///
/// Variables that each use the two before are few, but the ways through them are without number: what was opened once
/// adds nothing more.  An object that is made on the way of a question, for the same manager and the same place that is
/// filled, shares the memory of the outermost one.
class OpenedVariables {
public:
  OpenedVariables(BaseSolutionManager const & manager, void const * place);
  ~OpenedVariables();
  OpenedVariables(OpenedVariables const &) = delete;
  OpenedVariables & operator=(OpenedVariables const &) = delete;

  /// Nothing for a variable that was not opened to its end.
  std::optional<bool> Find(OutputVariable const & variable) const;
  void Remember(OutputVariable const & variable, bool isGood);

private:
  BaseSolutionManager const & m_manager;
  void const * m_place;
  OpenedVariables * m_former;
  OpenedVariables * m_outermost;
  std::map<OutputVariable const *, bool> m_opened; ///< of the outermost alone
};
