#pragma once

#include "basekit/text/AString.h"

#include <map>
#include <vector>

class BaseSolutionManager;
class OutputVariable;

/// While one lives, each distinct text is analysed once for all expression caches of a manager: traces share
/// abscissas and often ordinates, and nothing changes while they are synchronised.  One within another of the same
/// manager serves through the outer one.
class SharedAnalyses {
public:
  struct Analysis {
    bool isValid = false;
    std::vector<OutputVariable *> outputVariables;
    std::map<unsigned, std::vector<AString>> simValues; ///< texts by report type
  };

  explicit SharedAnalyses(BaseSolutionManager const & manager);
  ~SharedAnalyses();
  SharedAnalyses(SharedAnalyses const &) = delete;
  SharedAnalyses & operator=(SharedAnalyses const &) = delete;

  /// Null when the text was not analysed yet.
  Analysis const * Find(AString const & text) const;
  void Keep(AString const & text, Analysis analysis);

  /// The one that serves the manager now; null when there is none.
  static SharedAnalyses * Of(BaseSolutionManager const * manager);

private:
  BaseSolutionManager const & m_manager;
  SharedAnalyses * m_former;
  std::map<AString, Analysis> m_analyses;
};
