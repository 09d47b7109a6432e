#pragma once

#include "CoreInterfaces/solution/ISolutionPointSet.h"
#include "basekit/id/Id.h"
#include "basekit/io/ReadError.h"
#include "plotkit/CSimValueCache.h"
#include "plotkit/SimValueContext.h"
#include "plotkit/SubsweepVector.h"

#include <list>
#include <memory>
#include <set>

class IDesignEditor;
class ISimDataExtractor;
class PointSetUpdate;
class PropertyCommandInfo;
class TraceComponent;
namespace io {
class CBlock;
}

/// One sampled region of solved data: points, context, design instance and solution version, with the traces over it,
/// which it owns.  Its extractor owns the set; the instance is the design's.  A set is dirty when its data does not
/// reflect the solution.
class SolutionPointSet : public ISolutionPointSet {
public:
  static AString const kSolutionPointSetKeyword;

  /// To be read.
  explicit SolutionPointSet(ISimDataExtractor & extractor);
  /// The subsweeps are copied.  Without an instance design variables reach the set by its expressions alone.
  SolutionPointSet(ISimDataExtractor & extractor, SubsweepVector const & subsweeps, SimValueContext const * context,
                   IDesignInstance * instance, long id);
  ~SolutionPointSet() override;
  SolutionPointSet(SolutionPointSet const &) = delete;
  SolutionPointSet & operator=(SolutionPointSet const &) = delete;

  // ISolutionPointSet.  What is clean and has its values is not registered; nor are points that the cache has.
  void RegisterForUpdate(ISolutionPointSetUpdateRegistry * registry, IProgressMonitor * progress) override;
  bool UpdateFromLoadedData(VariableValues const & first, VariableValues const & second,
                            IProgressMonitor * progress) override;
  long GetSolutionID() const override;
  void GetLoadQuantities(std::map<unsigned, std::vector<AString>> & quantities) override;

  ISimDataExtractor * GetISimDataExtractor() const { return &m_extractor; }
  long GetID() const { return m_id; }
  void SetID(long id) { m_id = id; }
  AString const & GetName() const { return m_name; }
  void SetName(AString const & name) { m_name = name; }
  /// A shared set serves every report that asks for an equal one.
  bool GetIsShared() const { return m_isShared; }
  void SetIsShared(bool isShared) { m_isShared = isShared; }
  long GetSolutionVersionID() const { return m_solutionVersionID; }
  void SetSolutionVersionID(long version) { m_solutionVersionID = version; }
  void MarkItDirty(bool isDirty) { m_isDirty = isDirty; }
  bool IsDirty() const { return m_isDirty; }

  IDesignInstance * GetIDesignInstance() const { return m_instance; }
  void SetIDesignInstance(IDesignInstance * instance);
  /// The instance's variation when the set's data was last taken.
  AString const & GetDesignVariation() const { return m_designVariation; }
  SubsweepVector const & GetSubsweeps() const { return m_subsweeps; }
  SimValueContext const & GetSimValueContext() const { return m_context; }
  bool IsEqual(SubsweepVector const & subsweeps, SimValueContext const * context,
               IDesignInstance const * instance) const;
  /// True when the info tells of an edited variable that the set takes from its instance or, without one, that its
  /// expressions use or their sim values were solved for; null asks about any edit of those of the instance.
  bool IsDependentOnCurrentDesign(PropertyCommandInfo const * info) const;

  /// Appends; returns the list's size.
  int GetAvailableTraces(std::list<Trace *> & traces) const;
  /// The first shared trace of equal components, null standing for a missing one; null on a miss.
  Trace * FindTrace2D(TraceComponent const * x, TraceComponent const * y) const;
  Trace * FindTrace3D(TraceComponent const * x, TraceComponent const * y, TraceComponent const * z) const;
  /// A name that no trace of the set bears, compared without case.
  void SetUniqueTraceName(Trace * trace) const;
  /// Takes ownership.
  void AddTraceToList(Trace * trace);
  /// Deletes the trace; one that is not here is ignored.
  void RemoveTrace(Trace * trace);
  /// Drops the traces that are not in use.
  void DoGarbageCollection(std::set<Trace *> const & tracesInUse);
  bool OKtoDelete() const { return m_traces.empty(); }

  CSimValueCacheV & GetSimValueCache() { return m_cache; }
  /// The cache as one block among those of the extractor's other sets.  Reading takes the numbers of the set's own
  /// version: kNotFound when there are none of it, kBadContent when the block was written for another design or
  /// solution or is damaged; the cache is then as it was.
  io::ReadError DoDataExchangeSimValueCache(io::CBlock & block, bool reading);

  /// Evaluates the traces anew at all points, within the extractor's span of an update.  Variables come back to what
  /// they were.  False, and nothing changed, when the extractor refuses or there are too many points.
  bool UpdateData();
  /// Ends what RegisterForUpdate began, if that is still under way.  When everything that was registered was reached,
  /// points whose data could not be loaded come from the cache or are missing, the traces are clean and the set bears
  /// the version that the solution had; otherwise the former values come back.
  void FinishUpdate(bool wasEverythingReached);

  AString GetItemName() const { return kSolutionPointSetKeyword; }
  /// kWarning when the instance, the name or a trace is missing; other errors for sweeps that are not there or don't
  /// fit.
  io::ReadError Read(io::CBlock const & block, IDesignEditor * editor);
  bool Write(io::CBlock & block) const;

private:
  bool IsSwept(AString const & variable) const;
  /// The former values come back.
  void DropUpdate();
  std::vector<Trace *> TracesToUpdate() const;
  std::vector<unsigned> ReportTypes(PointSetUpdate const & update) const;
  io::ReadError ReadSubsweeps(io::CBlock const & block, SubsweepVector & subsweeps) const;
  IDesignInstance * FindInstance(long id) const;
  io::ReadError ReadTraces(io::CBlock const & block);

  ISimDataExtractor & m_extractor;
  SubsweepVector m_subsweeps;
  SimValueContext m_context;
  IDesignInstance * m_instance = nullptr;
  AString m_designVariation;
  long m_id = id::invalidID;
  long m_solutionVersionID = id::invalidID;
  AString m_name;
  bool m_isShared = false;
  bool m_isDirty = false;
  std::list<Trace *> m_traces;
  CSimValueCacheV m_cache;
  std::unique_ptr<PointSetUpdate> m_update; ///< between RegisterForUpdate and FinishUpdate
  std::vector<unsigned> m_reportTypes;      ///< of that update
};
