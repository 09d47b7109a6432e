#pragma once

#include "basekit/io/ReadError.h"
#include "basekit/text/AString.h"
#include "plotkit/simvalue/SampleSegments.h"

#include <memory>
#include <vector>

class ExtendedTraceInfo;
class PostprocessMsg;
class SolutionPointSet;
class Trace2D;
class Trace3D;
class TraceComponent;
class ValueMessage;
enum class TabPage : int;
namespace io {
class CBlock;
class CBlock_func;
} // namespace io
using Msg = ValueMessage;

/// One curve of a report, over the points of the set that owns it: an abscissa, an ordinate and, on a 3D trace, a third
/// component, which the trace owns.  Any of them may be missing.  All components have equally many values; which of
/// them belong to which variation, the segments tell.  A trace is dirty when its values do not reflect the solution.
class Trace {
public:
  /// Takes the components.
  explicit Trace(SolutionPointSet & pointSet, TraceComponent * x = nullptr, TraceComponent * y = nullptr);
  virtual ~Trace();
  Trace(Trace const &) = delete;
  Trace & operator=(Trace const &) = delete;

  /// An update of the set begins: the values go, and the message goes on to all that the expressions refer to.
  virtual void BeginPostprocessingUpdate(PostprocessMsg & message);
  virtual bool Is3D() const { return false; }
  /// Null when the trace is of another class.
  virtual Trace2D const * GetTrace2D() const { return nullptr; }
  virtual Trace2D * GetTrace2D() { return nullptr; }
  virtual Trace3D const * GetTrace3D() const { return nullptr; }
  virtual Trace3D * GetTrace3D() { return nullptr; }
  /// The component that depends on the others.
  virtual TraceComponent * GetLastOrdinate() const;
  virtual void ClearValues();
  /// The values at the point that the sweeps' variables stand at now.
  virtual void AppendNewValue();
  /// Null stands for a missing component.
  virtual bool IsEqual(TraceComponent const * x, TraceComponent const * y, TraceComponent const * z) const;
  virtual bool IsEqual(TraceComponent const * x, TraceComponent const * y) const;
  /// What was entered on a tab of that number; null when the trace has no such component.
  virtual TraceComponent * GetTraceComponent(TabPage tab) const;
  /// Takes the component in the place of the abscissa (0), the ordinate (1) or the third one (2), and drops the
  /// values.  False, and not taken, for a place that the trace does not have.
  virtual bool ReplaceComponent(TraceComponent * component, unsigned place);
  /// True when something that the expressions refer to took the message.
  virtual bool SendMessageToValues(Msg & message);
  /// The name of the trace's block.
  virtual AString GetItemName() const;
  /// Null unless a report set one.
  virtual ExtendedTraceInfo const * GetExtendedTraceInfo() const { return m_extendedInfo.get(); }
  virtual ExtendedTraceInfo * GetExtendedTraceInfo() { return m_extendedInfo.get(); }
  /// Takes ownership.
  virtual void SetExtendedTraceInfo(ExtendedTraceInfo * info);
  /// Binds the expressions, as BindComponents.  There are no values, so that the trace is dirty.  kBadContent, and
  /// nothing changed, for a component that can't be read.
  virtual io::ReadError Read(io::CBlock const & block);
  virtual bool Write(io::CBlock & block) const;
  /// Those that are there, abscissa first; returns their number.
  virtual int GetTraceComponents(std::vector<TraceComponent *> & components) const;

  SolutionPointSet & GetSolutionPointSet() const { return m_pointSet; }
  TraceComponent * GetAbscissa() const { return m_abscissa.get(); }
  TraceComponent * GetOrdinate() const { return m_ordinate.get(); }
  /// Unique among the traces of the set.
  AString const & GetName() const { return m_name; }
  void SetName(AString const & name) { m_name = name; }
  void MarkItDirty(bool isDirty) { m_isDirty = isDirty; }
  bool IsDirty() const { return m_isDirty; }
  bool GetIsShared() const { return m_isShared; }
  void SetIsShared(bool isShared) { m_isShared = isShared; }

  /// Binds each expression anew, in the current name space and by the installed value parser; words are meant in the
  /// component's context or the set's, which stays the extractor's.  False when one of them means nothing now.
  bool BindComponents();
  SampleSegments const & GetSegments() const { return m_segments; }
  /// The values that were appended to every component since the last segment are those of a major point.
  void AddSegment(std::size_t point, AString const & variation, bool isMissing = false);
  /// Puts segments and values in the order of the set's points.
  void ArrangeSegments();
  /// Number of values of each component.
  std::size_t GetValueCount() const;

  /// The values of all components with their segments, as an update sets them aside.
  struct Values {
    std::vector<ValueColumn> columns;
    SampleSegments segments;
  };
  /// The trace has none afterwards.
  Values TakeValues();
  /// In the place of those that are there; for the components that they were taken from.
  void PutValues(Values && values);

  /// A trace of the class that a block's name tells; null when it tells none.
  static std::unique_ptr<Trace> Make(AString const & itemName, SolutionPointSet & pointSet);

protected:
  TraceComponent * GetThirdComponent() const { return m_third.get(); }
  void SetThirdComponent(TraceComponent * component);

private:
  /// Null for a place that the trace does not have.
  std::unique_ptr<TraceComponent> * At(unsigned place);

  SolutionPointSet & m_pointSet;
  std::unique_ptr<TraceComponent> m_abscissa;
  std::unique_ptr<TraceComponent> m_ordinate;
  std::unique_ptr<TraceComponent> m_third; ///< of 3D traces alone
  bool m_isShared = false;
  bool m_isDirty = false;
  AString m_name;
  SampleSegments m_segments;
  std::unique_ptr<ExtendedTraceInfo> m_extendedInfo;
};
