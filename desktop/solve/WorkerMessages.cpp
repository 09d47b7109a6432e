#include "desktop/solve/WorkerMessages.h"

#include "basekit/io/CNamed_value_manip.h"

namespace desktop {

namespace {

JobFrame FrameOf(FrameKind kind, wchar_t const * name) {
  JobFrame frame;
  frame.kind = kind;
  frame.payload = io::CBlock(name);
  return frame;
}

template <class T> void Put(JobFrame & frame, wchar_t const * name, T const & value) {
  frame.payload << io::CBlock_named_value(name, io::CBlock_value(value));
}

template <class T> bool Take(JobFrame const & frame, wchar_t const * name, T & value) {
  io::CBlock_item const * const item = frame.payload.FindItem(name, io::CBlock_item::Kind::NamedValue);
  return item && item->Query(value);
}

// The one child that is a block, whatever a product named it.
io::CBlock_ptr<io::CBlock> BlockIn(JobFrame const & frame) {
  for (auto const & item : frame.payload)
    if (item->IsBlock())
      return io::CBlock_ptr<io::CBlock>(item);
  return {};
}

constexpr wchar_t const * kRowName = L"c";

io::CBlock_ptr<io::CBlock_func> RowIn(JobFrame const & frame) {
  for (auto const & item : frame.payload)
    if (io::CBlock_ptr<io::CBlock_func> const row(item); row && row->Name().Compare(kRowName) == 0)
      return row;
  return {};
}

constexpr wchar_t const * kSourceName = L"Source";

void Put(JobFrame & frame, JobSource const & source) {
  io::CBlock_func item(kSourceName);
  item << io::named(L"Path", source.path) << io::named(L"Size", static_cast<long>(source.size))
       << io::named(L"Checksum", static_cast<long>(source.checksum));
  frame.payload << item;
}

// False when a source is there that can't be read.
bool Take(JobFrame const & frame, std::vector<JobSource> & sources) {
  sources.clear();
  for (auto const & item : frame.payload) {
    io::CBlock_ptr<io::CBlock_func> const file(item);
    if (!file || file->Name().Compare(kSourceName) != 0)
      continue;
    long size = 0;
    long checksum = 0;
    JobSource & source = sources.emplace_back();
    *file >> io::named(L"Path", source.path) >> io::named(L"Size", size) >> io::named(L"Checksum", checksum);
    if (!file->Found())
      return false;
    source.size = static_cast<std::uint64_t>(size);
    source.checksum = static_cast<std::uint32_t>(checksum);
  }
  return true;
}

void Put(JobFrame & frame, JobCost const & cost) {
  Put(frame, L"Seconds", cost.seconds);
  Put(frame, L"CpuSeconds", cost.cpuSeconds);
  Put(frame, L"Memory", cost.memory);
}

bool Take(JobFrame const & frame, JobCost & cost) {
  return Take(frame, L"Seconds", cost.seconds) && Take(frame, L"CpuSeconds", cost.cpuSeconds) &&
         Take(frame, L"Memory", cost.memory);
}

} // namespace

JobFrame HelloMessage::Write() const {
  JobFrame frame = FrameOf(FrameKind::kHello, L"Hello");
  Put(frame, L"Protocol", protocol);
  Put(frame, L"Product", product);
  return frame;
}

bool HelloMessage::Read(JobFrame const & frame) {
  return frame.kind == FrameKind::kHello && Take(frame, L"Protocol", protocol) && Take(frame, L"Product", product);
}

JobFrame JobMessage::Write() const {
  JobFrame frame = FrameOf(FrameKind::kJob, L"Job");
  Put(frame, L"Number", number);
  Put(frame, L"SourceFile", job.sourceFile);
  for (JobSource const & source : job.sources)
    Put(frame, source);
  Put(frame, L"SetupName", job.setupName);
  Put(frame, L"SetupType", job.setupType);
  Put(frame, L"Variation", job.variation);
  frame.payload << job.settings;
  return frame;
}

bool JobMessage::Read(JobFrame const & frame) {
  auto const settings = BlockIn(frame);
  if (frame.kind != FrameKind::kJob || !settings)
    return false;
  job.settings = *settings;
  return Take(frame, L"Number", number) && Take(frame, L"SourceFile", job.sourceFile) && Take(frame, job.sources) &&
         Take(frame, L"SetupName", job.setupName) && Take(frame, L"SetupType", job.setupType) &&
         Take(frame, L"Variation", job.variation);
}

JobFrame ProgressMessage::Write() const {
  JobFrame frame = FrameOf(FrameKind::kProgress, L"Progress");
  Put(frame, L"Number", number);
  Put(frame, L"Fraction", fraction);
  Put(frame, L"Text", text);
  return frame;
}

bool ProgressMessage::Read(JobFrame const & frame) {
  return frame.kind == FrameKind::kProgress && Take(frame, L"Number", number) && Take(frame, L"Fraction", fraction) &&
         Take(frame, L"Text", text);
}

JobFrame ResultMessage::Write() const {
  JobFrame frame = FrameOf(FrameKind::kResult, L"Result");
  Put(frame, L"Number", number);
  Put(frame, cost);
  frame.payload << items;
  return frame;
}

bool ResultMessage::Read(JobFrame const & frame) {
  items = BlockIn(frame);
  return frame.kind == FrameKind::kResult && items && Take(frame, L"Number", number) && Take(frame, cost);
}

JobFrame ErrorMessage::Write() const {
  JobFrame frame = FrameOf(FrameKind::kError, L"Error");
  Put(frame, L"Number", number);
  Put(frame, cost);
  Put(frame, L"Text", text);
  return frame;
}

bool ErrorMessage::Read(JobFrame const & frame) {
  return frame.kind == FrameKind::kError && Take(frame, L"Number", number) && Take(frame, cost) &&
         Take(frame, L"Text", text);
}

JobFrame PassMessage::Write() const {
  JobFrame frame = FrameOf(FrameKind::kPass, L"Pass");
  Put(frame, L"Number", number);
  Put(frame, L"Index", index);
  frame.payload << row;
  return frame;
}

bool PassMessage::Read(JobFrame const & frame) {
  row = RowIn(frame);
  return frame.kind == FrameKind::kPass && row && Take(frame, L"Number", number) && Take(frame, L"Index", index);
}

JobFrame ConvergenceMessage::Write() const {
  JobFrame frame = FrameOf(FrameKind::kConvergence, L"Convergence");
  Put(frame, L"Number", number);
  Put(frame, L"Index", index);
  Put(frame, L"IsConverged", isConverged);
  Put(frame, L"ConsecutivePasses", consecutivePasses);
  return frame;
}

bool ConvergenceMessage::Read(JobFrame const & frame) {
  return frame.kind == FrameKind::kConvergence && Take(frame, L"Number", number) && Take(frame, L"Index", index) &&
         Take(frame, L"IsConverged", isConverged) && Take(frame, L"ConsecutivePasses", consecutivePasses);
}

JobFrame ProfileMessage::Write() const {
  JobFrame frame = FrameOf(FrameKind::kProfile, L"Profile");
  Put(frame, L"Number", number);
  Put(frame, L"Index", index);
  Put(frame, L"Kind", update.GetKind());
  Put(frame, L"Info", update.GetInfo());
  CProfileTask const & task = update.GetTask();
  Put(frame, L"Task", task.GetName());
  Put(frame, L"TaskInfo", task.GetInfo());
  Put(frame, JobCost{task.GetRealTime(), task.GetCpuTime(), task.GetMemory()});
  return frame;
}

bool ProfileMessage::Read(JobFrame const & frame) {
  int kind = 0;
  AString info;
  AString name;
  AString taskInfo;
  JobCost cost;
  if (frame.kind != FrameKind::kProfile || !Take(frame, L"Number", number) || !Take(frame, L"Index", index) ||
      !Take(frame, L"Kind", kind) || !Take(frame, L"Info", info) || !Take(frame, L"Task", name) ||
      !Take(frame, L"TaskInfo", taskInfo) || !Take(frame, cost))
    return false;
  CProfileTask task(name, taskInfo);
  task.SetCost(cost.seconds, cost.cpuSeconds, cost.memory);
  update = CProfileUpdate(kind, task, info);
  return true;
}

} // namespace desktop
