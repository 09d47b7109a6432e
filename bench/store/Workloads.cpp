#include "bench/store/Workloads.h"

#include "bench/store/IEngine.h"
#include "bench/support/Measure.h"
#include "bench/support/Values.h"

#include <algorithm>
#include <csignal>
#include <functional>
#include <numeric>
#include <random>

namespace bench {

namespace {

using Numbers = std::vector<std::size_t>;
using Purpose = IEngine::Purpose;
/// Inputs that are held at a time, so that they don't decide how much memory a phase takes.
constexpr std::size_t kChunk = 1000;
constexpr std::size_t kFillBatch = 10000;
constexpr std::size_t kBatch = 100;

/// What a workload has done.
struct Work {
  Job const & job;
  IEngine & engine;
  Stopwatch watch;
  std::size_t ops = 0;
  bool stopped = false;
  double indexBytes = -1;

  void Timed(std::size_t count, std::function<void()> const & step) {
    watch.Start();
    step();
    watch.Stop();
    ops += count;
    stopped = watch.Seconds() > job.limit;
  }
};

Numbers UpTo(std::size_t n) {
  Numbers numbers(n);
  std::iota(numbers.begin(), numbers.end(), std::size_t(1));
  return numbers;
}

Numbers Shuffled(std::size_t n) {
  Numbers numbers = UpTo(n);
  std::shuffle(numbers.begin(), numbers.end(), std::mt19937_64(7));
  return numbers;
}

void InChunks(Work & work, Numbers const & numbers, std::size_t size,
              std::function<void(std::span<std::size_t const>)> const & step) {
  for (std::size_t first = 0; first < numbers.size() && !work.stopped; first += size)
    step(std::span(numbers).subspan(first, std::min(size, numbers.size() - first)));
}

void Fill(IEngine & engine, Job const & job) {
  Numbers const numbers = UpTo(job.n);
  for (std::size_t first = 0; first < job.n; first += kFillBatch) {
    engine.Prepare(std::span(numbers).subspan(first, std::min(kFillBatch, job.n - first)), job.payload, 0);
    engine.SaveAll();
  }
}

void SaveEach(Work & work, Numbers const & numbers, std::size_t version) {
  work.engine.Open(work.job.folder, Purpose::Work);
  InChunks(work, numbers, kChunk, [&](std::span<std::size_t const> chunk) {
    work.engine.Prepare(chunk, work.job.payload, version);
    for (std::size_t place = 0; place < chunk.size() && !work.stopped; ++place)
      work.Timed(1, [&] { work.engine.Save(place); });
  });
}

void SaveStream(Work & work) { SaveEach(work, UpTo(work.job.n), 0); }

void Overwrite(Work & work) {
  Numbers some = Shuffled(work.job.n);
  some.resize(std::max<std::size_t>(1, some.size() / 10));
  SaveEach(work, some, 1);
}

void BatchSave(Work & work) {
  work.engine.Open(work.job.folder, Purpose::Work);
  InChunks(work, UpTo(work.job.n), kBatch, [&](std::span<std::size_t const> chunk) {
    work.engine.Prepare(chunk, work.job.payload, 0);
    work.Timed(chunk.size(), [&] { work.engine.SaveAll(); });
  });
}

void Commit(Work & work) {
  work.engine.Open(work.job.folder, Purpose::Work);
  Fill(work.engine, work.job);
  work.Timed(work.job.n, [&] { work.engine.Commit(); });
}

// Of one block in ten, into a library that has a commit.
void CommitMore(Work & work) {
  work.engine.Open(work.job.folder, Purpose::Work);
  Numbers some = Shuffled(work.job.n);
  some.resize(std::max<std::size_t>(1, some.size() / 10));
  work.engine.Prepare(some, work.job.payload, 1);
  work.engine.SaveAll();
  work.Timed(some.size(), [&] { work.engine.Commit(); });
}

void OpenAndList(Work & work, Purpose purpose) {
  std::size_t listed = 0;
  auto const before = HeapInUse();
  work.Timed(work.job.n, [&] {
    work.engine.Open(work.job.folder, purpose);
    listed = work.engine.List();
  });
  work.indexBytes = static_cast<double>(HeapInUse() - before) / static_cast<double>(work.job.n);
  Require(listed == work.job.n,
          "of " + std::to_string(work.job.n) + " blocks " + std::to_string(listed) + " came back");
}

void LoadRandom(Work & work) {
  work.engine.Open(work.job.folder, Purpose::Work);
  work.engine.List();
  InChunks(work, Shuffled(work.job.n), kChunk, [&](std::span<std::size_t const> chunk) {
    work.engine.PrepareNames(chunk);
    std::span<double const> loaded;
    work.Timed(chunk.size(), [&] {
      for (std::size_t place = 0; place < chunk.size(); ++place)
        loaded = work.engine.Load(place);
    });
    Require(std::ranges::equal(loaded, ValuesOf(chunk.back(), work.job.payload)), "a block came back changed");
  });
}

void DeleteHalf(Work & work) {
  work.engine.Open(work.job.folder, Purpose::Work);
  Numbers half = Shuffled(work.job.n);
  half.resize(half.size() / 2);
  work.engine.PrepareNames(half);
  work.Timed(half.size(), [&] {
    work.engine.DeleteAll();
    work.engine.Rewrite();
  });
}

void SaveOne(Work & work) {
  work.engine.Open(work.job.folder, Purpose::Work);
  Numbers const one = {work.job.n / 2 + 1};
  // What is read at the first look, and the table that the first look-up builds, are no part of a save.
  work.engine.List();
  work.engine.PrepareNames(one);
  work.engine.Load(0);
  work.engine.Prepare(one, work.job.payload, 1);
  work.Timed(1, [&] {
    work.engine.Save(0);
    work.engine.Commit();
  });
}

struct Entry {
  Workload workload;
  void (*run)(Work &);
};

std::vector<Entry> const & Table() {
  static std::vector<Entry> const table = {
      {{"save_stream", Before::Nothing, true}, SaveStream},
      {{"batch_save", Before::Nothing, true}, BatchSave},
      {{"commit", Before::Nothing, true}, Commit},
      {{"commit_more", Before::Committed, true}, CommitMore},
      {{"open_index", Before::Committed, false}, [](Work & work) { OpenAndList(work, Purpose::List); }},
      {{"load_random", Before::Committed, false}, LoadRandom},
      {{"overwrite", Before::Committed, true}, Overwrite},
      {{"save_one", Before::Committed, true}, SaveOne},
      {{"delete_half", Before::Committed, true}, DeleteHalf},
      {{"crash_recover", Before::Killed, true}, [](Work & work) { OpenAndList(work, Purpose::Recover); }},
  };
  return table;
}

} // namespace

std::vector<Workload> const & AllWorkloads() {
  static std::vector<Workload> const all = [] {
    std::vector<Workload> workloads;
    for (auto const & entry : Table())
      workloads.push_back(entry.workload);
    return workloads;
  }();
  return all;
}

nlohmann::json RunPhase(Job const & job) {
  auto const entry = std::ranges::find(Table(), job.workload, [](Entry const & each) { return each.workload.name; });
  Require(entry != Table().end(), "there is no workload " + job.workload);
  auto const engine = MakeEngine(job.engine);
  Work work{job, *engine, {}, 0, false, -1};
  entry->run(work);
  nlohmann::json told = {{"seconds", work.watch.Seconds()},
                         {"ops", work.ops},
                         {"bytes_on_disk", BytesOfFiles(job.folder)},
                         {"peak_rss", PeakMemory()}};
  if (job.workload == "open_index")
    told["index_bytes_per_block"] = work.indexBytes;
  if (work.stopped)
    told["stopped"] = true;
  return told;
}

void MakeFiles(Job const & job, Before before) {
  auto const engine = MakeEngine(job.engine);
  engine->Open(job.folder, Purpose::Work);
  Fill(*engine, job);
  if (before == Before::Committed)
    engine->Commit();
  else
    std::raise(SIGKILL);
}

} // namespace bench
