#pragma once

class SolutionPointSet;

/// One curve of a report, over the points of the set that owns it.
class Trace {
public:
  explicit Trace(SolutionPointSet & pointSet) : m_pointSet(pointSet) {}
  virtual ~Trace();
  Trace(Trace const &) = delete;
  Trace & operator=(Trace const &) = delete;

  virtual void ClearValues() = 0;
  /// The values at the point that the sweeps' variables stand at now.
  virtual void AppendNewValue() = 0;

  SolutionPointSet & GetSolutionPointSet() const { return m_pointSet; }
  /// A dirty trace does not reflect the solution.
  void MarkItDirty(bool isDirty) { m_isDirty = isDirty; }
  bool IsDirty() const { return m_isDirty; }
  bool GetIsShared() const { return m_isShared; }
  void SetIsShared(bool isShared) { m_isShared = isShared; }

private:
  SolutionPointSet & m_pointSet;
  bool m_isDirty = false;
  bool m_isShared = false;
};
