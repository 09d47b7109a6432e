#pragma once

#include "basekit/value/ValueBase.h"

#include <vector>

class ISimDataExtractor;
class SimValue;
class SolutionPointSet;

/// Gathers the sim values that a value refers to, itself included, each once, in the order of its words.  For whom it
/// asks, an extractor and perhaps one of its point sets, is told to products' values, which may stand for others.
/// Owns nothing.
class ReferencesSimValuesMessage : public ValueMessage {
public:
  static constexpr unsigned long tag = 0x76616C68;

  /// With oneIsEnough it asks only whether there are any, and gathers no more than the first.
  ReferencesSimValuesMessage(ISimDataExtractor * extractor, SolutionPointSet * pointSet, bool oneIsEnough)
      : ValueMessage(tag), m_extractor(extractor), m_pointSet(pointSet), m_oneIsEnough(oneIsEnough) {}

  ISimDataExtractor * GetISimDataExtractor() const { return m_extractor; }
  SolutionPointSet * GetSolutionPointSet() const { return m_pointSet; }

  void Add(SimValue const & value);
  std::vector<SimValue *> const & GetSimValues() const { return m_simValues; }

private:
  ISimDataExtractor * m_extractor;
  SolutionPointSet * m_pointSet;
  bool m_oneIsEnough;
  std::vector<SimValue *> m_simValues;
};
