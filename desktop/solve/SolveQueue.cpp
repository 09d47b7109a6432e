#include "desktop/solve/SolveQueue.h"

#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "basekit/id/Id.h"
#include "desktop/Error.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/solve/DeliveredExtras.h"
#include "desktop/solve/SolveRecords.h"
#include "desktop/solve/SolveRun.h"
#include "desktop/solve/SourceGuard.h"
#include "desktop/solve/StopRequests.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <limits>
#include <set>
#include <tuple>

namespace desktop {

namespace {

constexpr std::size_t kMostErrors = 1000;
wchar_t const * const kNotStored = L"failed: solved, but the result could not be stored";

struct Point {
  long setupID = id::invalidID;
  long solutionID = id::invalidID;
  long version = id::invalidID;
  long variationID = id::invalidID;
  AString variation;
  long setupVersion = id::invalidID;

  SolutionVariationKey Key() const { return SolutionVariationKey(setupID, variation, solutionID, version); }
  /// In the order in which questions narrow down: setup, variation, solution.
  auto Identity() const { return std::make_tuple(setupID, variationID, solutionID, version); }
};

BaseSimulationSetup * FindSetup(BaseSolutionManager & manager, long setupID) {
  return dynamic_cast<BaseSimulationSetup *>(manager.GetISimulationSetupByID(setupID, false, false));
}

BaseSolution * FindSolution(BaseSolutionManager & manager, long setupID, long solutionID) {
  BaseSimulationSetup const * const setup = FindSetup(manager, setupID);
  return setup ? dynamic_cast<BaseSolution *>(setup->GetISolutionByID(solutionID, false)) : nullptr;
}

BaseSolution * FindSolution(BaseSolutionManager & manager, Point const & point) {
  return FindSolution(manager, point.setupID, point.solutionID);
}

} // namespace

void ISolveListener::OnStarted(AString const &, AString const &) {}
void ISolveListener::OnPointProgress(AString const &, AString const &, double, AString const &) {}
void ISolveListener::OnPass(AString const &, AString const &, ConvergenceData const &, int) {}
void ISolveListener::OnSolved(AString const &, AString const &) {}
void ISolveListener::OnStored(AString const &, AString const &, double) {}
void ISolveListener::OnFailed(AString const &, AString const &, AString const &) {}
void ISolveListener::OnProgress(int, int, int) {}
void ISolveListener::OnTick() {}

/// The points of the queue, in the order in which they were submitted; the number of a point is its place.
class SolveQueue::Impl : public ISolvePoints {
public:
  Impl(SolveSite const & site, SolveOptions const & options)
      : m_site(site), m_options(options), m_records(site.manager) {}

  bool Submit(std::vector<SolutionVariationKey> const & keys);
  bool IsSolving(IDesignInstance const * instance, long setupID, std::vector<long> const * solutionIDs) const;
  SolveOutcome Run(ISolveListener & listener);

  // ISolvePoints
  int CountWaiting() const override { return static_cast<int>(m_points.size() - m_next); }
  bool TakeNext(int & number, SolveJob & job) override;
  void Progressed(int number, double fraction, AString const & text) override;
  void Passed(int number, io::CBlock_ptr<io::CBlock_func> const & row, int index) override;
  void Converged(int number, bool isConverged, AString const & consecutivePasses, int index) override;
  void Profiled(int number, CProfileUpdate const & update, int index) override {
    m_records.AddCost(number, update, index);
  }
  void Tick() override;
  void Solved(int number) override;
  void Failed(int number, AString const & error, JobCost const & cost) override;
  void Store(std::vector<SolvedPoint> const & solved) override;

private:
  bool Expand(SolutionVariationKey const & key, std::vector<Point> & points) const;
  bool AddPoint(Point point, std::vector<Point> & points) const;
  void EnterStored(Point const & point);
  CStreamioLibrary::LibIOReturn StoreBatch(std::vector<SolvedPoint> const & solved);
  void Finish(bool isFailed);
  void TellProgress() { m_listener->OnProgress(m_outcome.stored, m_outcome.failed, static_cast<int>(m_points.size())); }
  Point PointAt(int number) const { return m_points[static_cast<std::size_t>(number)]; }
  AString SetupNameOf(Point const & point) const;
  bool TakeNotConverged(int number);
  void CheckSource();
  void Clear();

  SolveSite m_site;
  SolveOptions m_options;
  std::vector<Point> m_points;
  std::size_t m_next = 0;
  std::set<decltype(Point().Identity())> m_open;
  SolveRecords m_records;
  SourceGuard m_guard;
  ISolveListener * m_listener = nullptr;
  std::set<std::pair<int, int>> m_notConverged; ///< point and index of the record
  int m_solved = 0;                             ///< of this run, stored or about to be
  bool m_hasStoredExtras = false;
  SolveOutcome m_outcome;
};

// A point of that solution.  A variation that is there already lends its text, since its data is looked for under that
// one: equal variations may be written differently.
bool SolveQueue::Impl::AddPoint(Point point, std::vector<Point> & points) const {
  BaseSolution const * const solution = FindSolution(m_site.manager, point);
  if (!solution)
    return false;
  if (point.version == id::invalidID)
    point.version = solution->GetVersionID();
  if (auto const * const present = solution->GetBaseSolutionVariation(point.variation, point.version))
    point.variation = present->GetDesignVariationKey();
  points.push_back(point);
  return true;
}

bool SolveQueue::Impl::Expand(SolutionVariationKey const & key, std::vector<Point> & points) const {
  BaseSimulationSetup const * const setup = FindSetup(m_site.manager, key.GetSimSetupKey());
  if (!setup)
    return false;
  Point point{key.GetSimSetupKey(), key.GetSolutionKey(),        key.GetVersionIDKey(),
              id::invalidID,        key.GetDesignVariationKey(), setup->GetVersionID()};
  point.variationID = m_site.manager.GetVariationID(point.variation);
  if (point.solutionID != id::invalidID)
    return AddPoint(point, points);
  // The version of such a key is the setup's; each solution is solved at its own current one.
  point.version = id::invalidID;
  for (auto const & [solutionID, solution] : setup->GetSolutions()) {
    point.solutionID = solutionID;
    if (solution->NeedsToSimulate(point.variation, id::invalidID) && !AddPoint(point, points))
      return false;
  }
  return true;
}

bool SolveQueue::Impl::Submit(std::vector<SolutionVariationKey> const & keys) {
  if (m_site.isReadOnly)
    return false;
  std::vector<Point> points;
  for (auto const & key : keys)
    if (!Expand(key, points))
      return false;
  for (auto & point : points)
    if (m_open.insert(point.Identity()).second)
      m_points.push_back(std::move(point));
  return true;
}

bool SolveQueue::Impl::IsSolving(IDesignInstance const * instance, long setupID,
                                 std::vector<long> const * solutionIDs) const {
  // The look-up of a variation may enter it into the library: not for a question that has its answer without.
  if (m_open.empty() || !instance)
    return false;
  long const variationID = m_site.manager.GetVariationID(instance->GetVariationKey());
  auto at = m_open.lower_bound({setupID, variationID, std::numeric_limits<long>::min(), 0});
  for (; at != m_open.end() && std::get<0>(*at) == setupID && std::get<1>(*at) == variationID; ++at) {
    auto const & [setup, variation, solutionID, version] = *at;
    bool const isAsked =
        !solutionIDs || std::find(solutionIDs->begin(), solutionIDs->end(), solutionID) != solutionIDs->end();
    // What is solved for a version that an edit left behind doesn't solve the present one.
    BaseSolution const * const solution = isAsked ? FindSolution(m_site.manager, setup, solutionID) : nullptr;
    if (solution && solution->GetVersionID() == version)
      return true;
  }
  return false;
}

void SolveQueue::Impl::Clear() {
  m_records.EndAll();
  m_points.clear();
  m_next = 0;
  m_open.clear();
  m_notConverged.clear();
  m_listener = nullptr;
}

SolveOutcome SolveQueue::Impl::Run(ISolveListener & listener) {
  if (m_listener)
    throw Error(ErrorKind::kFailed, L"a solve is running already: wait for its end");
  struct ClearAtEnd {
    Impl & queue;
    ~ClearAtEnd() { queue.Clear(); }
  } const clear{*this};
  m_listener = &listener;
  m_outcome = SolveOutcome();
  m_solved = 0;
  m_hasStoredExtras = false;
  if (m_points.empty())
    return m_outcome;
  if (m_site.prepare)
    m_site.prepare();
  m_guard = SourceGuard(m_site.sources ? m_site.sources() : std::vector<JobSource>());
  TellProgress();
  try {
    m_outcome.interrupted = !SolveRun(*this, m_site.product.GetName(), m_options).Run();
  } catch (Error const &) {
    Finish(true);
    throw;
  }
  Finish(false);
  return std::move(m_outcome);
}

// What stores got is part of the design.
void SolveQueue::Impl::Finish(bool isFailed) {
  if (!m_hasStoredExtras || !m_site.finish)
    return;
  try {
    m_site.finish();
  } catch (Error const &) {
    if (!isFailed) // Else the first failure is the one to tell: what is stored can be taken up again from its records.
      throw;
  }
}

AString SolveQueue::Impl::SetupNameOf(Point const & point) const {
  BaseSimulationSetup const * const setup = FindSetup(m_site.manager, point.setupID);
  return setup ? setup->GetName() : AString::Format(L"setup %d", point.setupID);
}

// Workers refuse to solve from another source than the one that was read; here it ends the run, since all points that
// are left would fail alike.  What is solved by then is right, and stored.
void SolveQueue::Impl::CheckSource() {
  if (AString const change = m_guard.FindChange(); !change.empty())
    throw Error(ErrorKind::kSource,
                change + AString::Format(L"; the run ended before %d of its %d points were solved",
                                         static_cast<int>(m_points.size()) - m_solved - m_outcome.failed,
                                         static_cast<int>(m_points.size())));
}

bool SolveQueue::Impl::TakeNext(int & number, SolveJob & job) {
  CheckSource();
  while (m_next < m_points.size()) {
    number = static_cast<int>(m_next++);
    Point const point = PointAt(number);
    BaseSimulationSetup const * const setup = FindSetup(m_site.manager, point.setupID);
    if (!setup || !FindSolution(m_site.manager, point)) {
      Failed(number, L"the setup or solution was deleted before the point was solved", JobCost());
      continue;
    }
    job = SolveJob();
    job.sourceFile = m_site.sourceFile;
    job.sources = m_guard.GetSources();
    job.setupName = setup->GetName();
    job.setupType = setup->GetSimSetupTypeName();
    job.variation = point.variation;
    m_site.product.DescribeJob(*setup, job);
    m_records.Begin(number, {point.setupID, point.setupVersion, point.variationID, point.variation});
    m_listener->OnStarted(job.setupName, job.variation);
    return true;
  }
  return false;
}

void SolveQueue::Impl::Progressed(int number, double fraction, AString const & text) {
  Point const point = PointAt(number);
  m_listener->OnPointProgress(SetupNameOf(point), point.variation, fraction, text);
}

void SolveQueue::Impl::Passed(int number, io::CBlock_ptr<io::CBlock_func> const & row, int index) {
  ConvergenceData const * const record = m_records.AddPass(number, row, index);
  Point const point = PointAt(number);
  if (record)
    m_listener->OnPass(SetupNameOf(point), point.variation, *record, index);
}

void SolveQueue::Impl::Tick() {
  m_records.WriteDue();
  m_listener->OnTick();
}

void SolveQueue::Impl::Solved(int number) {
  ++m_solved;
  Point const point = PointAt(number);
  m_listener->OnSolved(SetupNameOf(point), point.variation);
}

void SolveQueue::Impl::Failed(int number, AString const & error, JobCost const & cost) {
  CheckSource();
  Point const point = PointAt(number);
  m_records.End(number, L"failed: " + error, cost);
  AString const setup = SetupNameOf(point);
  m_open.erase(point.Identity());
  ++m_outcome.failed;
  if (m_outcome.errors.size() < kMostErrors)
    m_outcome.errors.push_back(setup + L", " + point.variation + L": " + error);
  m_listener->OnFailed(setup, point.variation, error);
  TellProgress();
}

// First the data, then the records, and both before anybody is told: whatever a crash leaves, no record says "solved"
// of a point without data.
void SolveQueue::Impl::Converged(int number, bool isConverged, AString const & consecutivePasses, int index) {
  m_records.SetConvergence(number, isConverged, consecutivePasses, index);
  if (isConverged)
    m_notConverged.erase({number, index});
  else
    m_notConverged.emplace(number, index);
}

// Whether any record of the point's solve ended short of its target; the point is done with.
bool SolveQueue::Impl::TakeNotConverged(int number) {
  auto const first = m_notConverged.lower_bound({number, std::numeric_limits<int>::min()});
  auto const last = m_notConverged.upper_bound({number, std::numeric_limits<int>::max()});
  bool const isAny = first != last;
  m_notConverged.erase(first, last);
  return isAny;
}

void SolveQueue::Impl::Store(std::vector<SolvedPoint> const & solved) {
  auto const endRecords = [&](AString const & outcome) {
    for (auto const & result : solved)
      m_records.End(result.number, outcome, result.cost);
  };
  bool isStored = false;
  try {
    isStored = StoreBatch(solved) == CStreamioLibrary::kLibSuccess;
  } catch (Error const &) {
    endRecords(kNotStored);
    throw;
  }
  endRecords(isStored ? SolveRecords::kSolved : AString(kNotStored));
  if (!isStored)
    throw Error(ErrorKind::kStorage,
                AString::Format(L"results can't be stored in '%s': make sure that the disk has room and the folder can "
                                L"be written, and solve again; %d of %d points are stored",
                                m_site.manager.GetSolutionFileManager().GetLibPath(), m_outcome.stored,
                                static_cast<int>(m_points.size())));
  std::vector<SolutionVariationKey> stored;
  for (auto const & result : solved) {
    EnterStored(PointAt(result.number));
    stored.push_back(PointAt(result.number).Key());
  }
  if (m_site.stored)
    m_site.stored(stored);
  for (auto const & result : solved) {
    Point const point = PointAt(result.number);
    ++m_outcome.stored;
    m_outcome.notConverged += TakeNotConverged(result.number) ? 1 : 0;
    m_listener->OnStored(SetupNameOf(point), point.variation, result.cost.seconds);
  }
  TellProgress();
}

// Files of the points stand before their blocks do.
CStreamioLibrary::LibIOReturn SolveQueue::Impl::StoreBatch(std::vector<SolvedPoint> const & solved) {
  DeliveredExtras extras;
  io::CBlock batch(L"Batch");
  for (auto const & result : solved) {
    Point const point = PointAt(result.number);
    auto const items = extras.Take(FindSolution(m_site.manager, point), point.variation, point.version, result.items);
    items->Name(point.Key().Pack());
    batch << items;
  }
  auto const stored = m_site.manager.SaveBlocks(batch);
  if (stored == CStreamioLibrary::kLibSuccess && extras.Accept())
    m_hasStoredExtras = true;
  return stored;
}

// The variation is made without its data: of very many points only those that somebody looks at come into memory.
void SolveQueue::Impl::EnterStored(Point const & point) {
  m_open.erase(point.Identity());
  BaseSolution * const solution = FindSolution(m_site.manager, point);
  BaseSolutionVariation * const variation =
      solution ? solution->EnsureVariation(point.variation, point.version) : nullptr;
  // Data of a former solve gives way to what is stored now.
  if (variation && variation->HasSolutionData())
    variation->ClearInstanceMemoryData();
}

SolveQueue::SolveQueue(SolveSite const & site, SolveOptions const & options)
    : m_impl(std::make_unique<Impl>(site, options)) {}

SolveQueue::~SolveQueue() = default;

int SolveQueue::IsSolutionSolving(IDesignInstance * instance, long setupID, std::vector<long> const & solutionIDs) {
  return m_impl->IsSolving(instance, setupID, &solutionIDs) ? 1 : 0;
}

int SolveQueue::IsSetupSolving(IDesignInstance * instance, long setupID) {
  return m_impl->IsSolving(instance, setupID, nullptr) ? 1 : 0;
}

bool SolveQueue::SubmitSolve(IDesignInstance *, std::vector<SolutionVariationKey> const & keys, void const *,
                             void const *, long const *, int, int, AString const &, long, long) {
  return m_impl->Submit(keys);
}

int SolveQueue::QueuedCount() const { return m_impl->CountWaiting(); }

SolveOutcome SolveQueue::Run(ISolveListener & listener) { return m_impl->Run(listener); }

void SolveQueue::RequestStop() { StopRequests::Add(); }

int SolveQueue::CountStopRequests() { return StopRequests::Count(); }

} // namespace desktop
