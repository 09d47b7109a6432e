#pragma once

#include "basekit/io/CBlock_func.h"
#include "basekit/text/AString.h"

#include <chrono>
#include <map>
#include <set>
#include <tuple>

class BaseSimulationSetup;
class BaseSolutionManager;
class CProfileGroup;
class CProfileTask;
class CProfileUpdate;
class ConvergenceData;

namespace desktop {

struct JobCost;

/// Which record of which setup a solve leaves.
struct RecordAddress {
  long setupID = -1;
  long version = -1; ///< the setup's
  long variationID = -1;
  AString variation;
};

/// Enters what running jobs tell of their passes and costs into the records of their setups, and writes those into the
/// library: at the end of each job, and the passes of a long one also while it runs.  In memory are the records of
/// running jobs alone.  Each solve adds a group of costs to the profile of its variation; its passes replace those of
/// a former solve.  Jobs are known by the numbers of their points.
class SolveRecords {
public:
  /// So often at most are the passes of a running job written.
  static constexpr std::chrono::milliseconds kBetweenWrites{500};

  /// The outcome of a point that was solved; any other tells why it was not.
  static AString const kSolved;
  /// That of a point that a run left unsolved: neither solved nor failed, and its cost unknown.
  static AString const kStopped;

  explicit SolveRecords(BaseSolutionManager & manager) : m_manager(manager) {}
  SolveRecords(SolveRecords const &) = delete;
  SolveRecords & operator=(SolveRecords const &) = delete;

  void Begin(int number, RecordAddress const & address);
  /// Gives the record with the pass; null when the pass was dropped.
  ConvergenceData const * AddPass(int number, io::CBlock_ptr<io::CBlock_func> const & row, int index);
  void SetConvergence(int number, bool isConverged, AString const & consecutivePasses, int index);
  void AddCost(int number, CProfileUpdate const & update, int index);
  /// What running jobs told since, where it is time for that.
  void WriteDue();
  /// The job is over: its records are closed with the outcome, written, and let go from memory.  Of a number without a
  /// job nothing is done.
  void End(int number, AString const & outcome, JobCost const & cost);
  /// The same for all jobs that are left: they were stopped.
  void EndAll();

  /// The task of a whole solve, with which its group ends; null for any other group and for one without an end.
  static CProfileTask const * WholeOf(int index, CProfileGroup const & group);

private:
  using Clock = std::chrono::steady_clock;
  using Identity = std::tuple<long, long, long>;

  struct Job {
    RecordAddress address;
    long group = -1;                ///< around the whole solve
    std::map<int, long> openGroups; ///< that the job started, by index
    std::set<int> begunSets;        ///< whose former passes are gone
    int passes = 0;
    int passesWritten = 0;
    bool isChanged = false;
    Clock::time_point nextWrite;
  };

  Job * Find(int number);
  BaseSimulationSetup * SetupOf(Job const & job) const;
  static Identity IdentityOf(RecordAddress const & address) {
    return {address.setupID, address.version, address.variationID};
  }
  void Close(int number, AString const & outcome, JobCost const * cost);
  void BeginSet(Job & job, BaseSimulationSetup & setup, int index);
  void WriteConvergence(Job & job, BaseSimulationSetup & setup);

  BaseSolutionManager & m_manager;
  std::map<int, Job> m_jobs;
  /// How many running jobs share a record: those of the solutions of one setup.
  std::map<Identity, int> m_users;
  /// Records of setups with several solutions that a job of this run began already: the next job goes on with them.
  std::set<Identity> m_shared;
};

} // namespace desktop
