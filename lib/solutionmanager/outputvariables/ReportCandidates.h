#pragma once

#include <vector>

class BaseSolutionManager;
class ISimDataExtractor;
class OutputVariable;
class SimValueContext;

/// Finds the output variables that a report of one extractor in one context can use.  Null allows everything.
class ReportCandidates {
public:
  ReportCandidates(BaseSolutionManager const & manager, ISimDataExtractor * extractor, SimValueContext const * context)
      : m_manager(manager), m_extractor(extractor), m_context(context) {}

  /// Those of all whose expressions are valid, in their order.
  std::vector<OutputVariable *> Choose(std::vector<OutputVariable *> const & all) const;
  /// Activates what can be, in passes over the candidates: one that uses another comes after it, and waits for the next
  /// pass when it stands before it.  The order is that of activation.  Needs an extractor.
  std::vector<OutputVariable *> Activate(std::vector<OutputVariable *> const & candidates) const;

private:
  BaseSolutionManager const & m_manager;
  ISimDataExtractor * m_extractor;
  SimValueContext const * m_context;
};
