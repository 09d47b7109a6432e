#pragma once

#include "basekit/text/AString.h"

#include <map>
#include <vector>

class BaseSolutionManager;
class OutputVariable;

/// What one expression refers to, analysed once, on the first question.  It stands for the text and the design as they
/// were then, and lives no longer than one synchronisation.  The manager and the variables outlive it.
class CParsedExpressionCache {
public:
  static constexpr unsigned kAllReportTypes = 0xFFFFFFFF;

  CParsedExpressionCache(AString const & expression, BaseSolutionManager const * solutionManager)
      : m_expression(expression), m_solutionManager(solutionManager) {}
  CParsedExpressionCache(CParsedExpressionCache const &) = default;
  CParsedExpressionCache & operator=(CParsedExpressionCache const &) = default;
  virtual ~CParsedExpressionCache();

  bool IsExpressionValid();
  bool AreThereQuantitiesOfType(unsigned reportType);
  /// Append, report types in ascending order.
  void GetReferencedReportTypes(std::vector<unsigned> & reportTypes);
  void GetReferencedOutputVars(std::vector<OutputVariable *> & variables);
  void GetReferencedSimValues(std::vector<AString> & texts, unsigned reportType);
  BaseSolutionManager const * GetSolutionManager() const { return m_solutionManager; }

protected:
  virtual void PopulateCache();
  /// For a PopulateCache of a derived class.
  AString const & GetExpression() const { return m_expression; }
  void SetResult(bool valid, std::map<unsigned, std::vector<AString>> const & simValues,
                 std::vector<OutputVariable *> const & variables);

private:
  void EnsureComputed();

  AString m_expression;
  BaseSolutionManager const * m_solutionManager;
  std::map<unsigned, std::vector<AString>> m_simValuesByReportType;
  std::vector<OutputVariable *> m_outputVars;
  bool m_cacheComputed = false;
  bool m_expressionValid = false;
};
