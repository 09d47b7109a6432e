#pragma once

#include "basekit/value/ValueBase.h"

class SolutionPointSet;

/// Told to a set's traces, and by them to all that their expressions refer to, before their values are taken anew.
class PostprocessMsg : public ValueMessage {
public:
  static constexpr unsigned long kTag = 0x70707570;

  PostprocessMsg(SolutionPointSet & pointSet, std::size_t pointCount)
      : ValueMessage(kTag), m_pointSet(pointSet), m_pointCount(pointCount) {}

  SolutionPointSet & GetSolutionPointSet() const { return m_pointSet; }
  /// How many values each trace will get, 0 when that is not known yet.
  std::size_t GetPointCount() const { return m_pointCount; }

private:
  SolutionPointSet & m_pointSet;
  std::size_t m_pointCount;
};
