#pragma once

#include "basekit/value/Variable.h"
#include "bench/model/PlainDesign.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

class BaseSimDataExtractor;
class BaseSolutionManager;
class ISolutionPointSet;
class SolutionPointSet;
class Trace;

namespace bench {

class ColumnsInMemory;
class ReportingManager;

/// One solution whose data over C = 1, 2, ... lies in memory by column: the complex S over frequencies.
class SolvedWorld {
public:
  SolvedWorld(std::string const & folder, std::size_t variations, std::size_t frequencies);
  ~SolvedWorld();

  BaseSolutionManager & Manager();
  BaseSimDataExtractor & Extractor();
  /// A set over all variations and frequencies with one trace over F.
  SolutionPointSet & AddReport(AString const & y);
  void AddTrace(SolutionPointSet & pointSet, AString const & y);
  Trace & TraceOf(SolutionPointSet & pointSet) const;
  void Update(std::vector<ISolutionPointSet *> const & pointSets);

  std::vector<double> const & Frequencies() const;
  std::vector<double> const & NumbersOf(std::size_t variation) const;
  /// How often a variation was made ready that was not.
  std::size_t Reads() const;
  /// How often a text was analysed.
  std::size_t Analyses() const;
  std::size_t Variations() const { return m_variations; }

private:
  PlainDesign m_design;
  Variable m_swept{L"C", L"1"};
  std::size_t m_variations;
  std::unique_ptr<ReportingManager> m_manager;
  ColumnsInMemory * m_columns = nullptr;
};

} // namespace bench
