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
  return Take(frame, L"Number", number) && Take(frame, L"SourceFile", job.sourceFile) &&
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
  Put(frame, L"Seconds", seconds);
  frame.payload << items;
  return frame;
}

bool ResultMessage::Read(JobFrame const & frame) {
  items = BlockIn(frame);
  return frame.kind == FrameKind::kResult && items && Take(frame, L"Number", number) &&
         Take(frame, L"Seconds", seconds);
}

JobFrame ErrorMessage::Write() const {
  JobFrame frame = FrameOf(FrameKind::kError, L"Error");
  Put(frame, L"Number", number);
  Put(frame, L"Seconds", seconds);
  Put(frame, L"Text", text);
  return frame;
}

bool ErrorMessage::Read(JobFrame const & frame) {
  return frame.kind == FrameKind::kError && Take(frame, L"Number", number) && Take(frame, L"Seconds", seconds) &&
         Take(frame, L"Text", text);
}

} // namespace desktop
