#pragma once

#include "CoreInterfaces/solution/ISolutionMgr.h"
#include "basekit/value/ValueState.h"

#include <functional>

class BaseSolutionManager;

/// What an expression needs: the report types of its quantities, in which contexts, and the output variables on the way
/// to them.  Owns nothing; lists and maps are added to.
class QuantityTypes {
public:
  using ReportTypeMap = ISolutionMgr::ReportTypeMap;
  using SimValuesByReportType = std::map<unsigned, std::vector<AString>>;
  /// What a product says of one word: its state, and an entry of the map for its report type.
  using AskProduct = std::function<ValueState(ReportTypeMap & reportTypes, AString const & label,
                                              ISimDataExtractor const * extractor)>;

  /// Null places are not filled.
  struct Found {
    ReportTypeMap & reportTypes;
    std::vector<OutputVariable *> * variables;
    SimValuesByReportType * simValues;
  };

  QuantityTypes(BaseSolutionManager const & manager, AskProduct const & ask) : m_manager(manager), m_ask(ask) {}

  /// False for a bad expression and for definitions that go round in a circle.  A word that no solution knows adds
  /// nothing.
  bool Find(AString const & expression, Found const & found, SolutionPointSet * pointSet) const;

private:
  bool FindThroughVariable(OutputVariable & variable, Found const & found) const;
  void FindQuantity(AString const & label, Found const & found) const;

  BaseSolutionManager const & m_manager;
  AskProduct const & m_ask;
};
