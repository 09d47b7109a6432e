#pragma once

#include "basekit/text/AString.h"

#include <map>
#include <vector>

class BaseSolutionManager;
class OutputVariable;

/// Answers questions about one expression from one analysis of it, made on the first question: is it valid, which
/// report types, sim values and output variables does it refer to.  It stands for the text and the design as they were
/// then.  Neither the manager nor the variables are owned.
class CParsedExpressionCache {
public:
  static constexpr unsigned kAllReportTypes = 0xFFFFFFFF;

  CParsedExpressionCache(AString const & expression, BaseSolutionManager const * manager);
  CParsedExpressionCache(CParsedExpressionCache const &) = default;
  CParsedExpressionCache & operator=(CParsedExpressionCache const &) = default;
  virtual ~CParsedExpressionCache();

  bool IsExpressionValid();
  bool AreThereQuantitiesOfType(unsigned reportType);
  /// The list operations append.
  void GetReferencedReportTypes(std::vector<unsigned> & reportTypes);
  void GetReferencedOutputVars(std::vector<OutputVariable *> & variables);
  /// The sim value texts of one report type, or of all in ascending order of type.
  void GetReferencedSimValues(std::vector<AString> & texts, unsigned reportType);
  BaseSolutionManager const * GetSolutionManager() const { return m_solutionManager; }

protected:
  virtual void PopulateCache();

private:
  void Compute();

  AString m_expression;
  BaseSolutionManager const * m_solutionManager;
  std::map<unsigned, std::vector<AString>> m_simValuesByReportType;
  std::vector<OutputVariable *> m_outputVars;
  bool m_cacheComputed = false;
  bool m_expressionValid = false;
};
