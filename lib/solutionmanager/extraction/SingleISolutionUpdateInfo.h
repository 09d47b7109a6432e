#pragma once

#include "CoreInterfaces/solution/ISolutionPointSet.h"
#include "basekit/value/VariableValues.h"

/// The point sets of one solution that an update is for, by the two groups of variable values at which each wants
/// data.  Not the owner of the sets.
class SingleISolutionUpdateInfo final : public ISolutionPointSetUpdateRegistry {
public:
  struct PointSetInfo {
    ISolutionPointSet * m_pointSet = nullptr;
    std::vector<unsigned> m_reportTypes;
  };
  using PointSets = std::map<ISolutionPointSet *, PointSetInfo>;
  using SecondGroup = std::map<VariableValues, PointSets, VariableValues::LessVariableValues>;
  using FirstGroup = std::map<VariableValues, SecondGroup, VariableValues::LessVariableValues>;

  /// A set that is there under equal values keeps its first report types.
  void RegisterPointSet(ISolutionPointSet * pointSet, VariableValues const & first, VariableValues const & second,
                        std::vector<unsigned> const & reportTypes) override {
    m_firstGroup[first][second].try_emplace(pointSet, PointSetInfo{pointSet, reportTypes});
  }
  FirstGroup const & GetFirstGroup() const { return m_firstGroup; }
  /// Of all records.
  std::size_t GetCount() const;

private:
  FirstGroup m_firstGroup;
};
