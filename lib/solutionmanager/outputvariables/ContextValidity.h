#pragma once

#include "plotkit/SimValueContext.h"

#include <unordered_map>
#include <vector>

class BaseSolutionManager;
class ISimDataExtractor;
class OutputVariable;

/// Which output variables are valid in one context of one extractor: each is looked into once while the object lives,
/// however many others refer to it.  The check of one comes back here for those that it refers to; one that leads back
/// to itself is not valid.  The user is told of each of the nearest fifty in a chain, of what lies further on where the
/// first fault is, and of each variable once.  The latest object alive serves the checks of its context.
class ContextValidity {
public:
  enum class Messages { kTold, kHeldBack };

  ContextValidity(BaseSolutionManager const & manager, ISimDataExtractor * extractor, SimValueContext const & context,
                  Messages messages);
  ~ContextValidity();
  ContextValidity(ContextValidity const &) = delete;
  ContextValidity & operator=(ContextValidity const &) = delete;

  bool IsValid(OutputVariable const & variable);

  /// Null when the latest one alive is of another context.
  static ContextValidity * Current(BaseSolutionManager const & manager, ISimDataExtractor const * extractor,
                                   SimValueContext const & context);
  /// True when nobody hears why an expression is not valid.
  static bool AreMessagesHeldBack();

private:
  enum class State { kUnderWay, kValid, kInvalid };
  struct Step;

  bool Check(OutputVariable const & variable);
  /// The first one that is not valid, which the others fail for.
  OutputVariable const * CheckFurtherOn(OutputVariable const & variable);
  void Enter(std::vector<Step> & path, OutputVariable const & variable);
  OutputVariable const * NextUnknown(Step & step) const;

  BaseSolutionManager const & m_manager;
  ISimDataExtractor * m_extractor;
  SimValueContext m_context;
  bool m_isSilent;
  int m_depth = 0;
  std::unordered_map<OutputVariable const *, State> m_states;
  ContextValidity * m_former;
};
