#include "tests/support/LibraryPlay.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/text/Utf8.h"

namespace support {

namespace {

using Kind = LibraryPlay::Step::Kind;
constexpr std::uint64_t kNames = 12;
/// The low bits of a tag are the number of values in the block.
constexpr std::uint64_t kCountMask = 0xFFFFF;

Kind KindFor(std::uint64_t random) {
  std::uint64_t const percent = random % 100;
  return percent < 52   ? Kind::Save
         : percent < 68 ? Kind::Batch
         : percent < 84 ? Kind::Delete
         : percent < 91 ? Kind::Update
         : percent < 95 ? Kind::Commit
         : percent < 97 ? Kind::Compact
                        : Kind::Rewrite;
}

std::uint64_t CountFor(std::uint64_t random, LibraryPlay::Sizes sizes) {
  if (sizes == LibraryPlay::Sizes::Small)
    return random % 6;
  return random % 100 == 0 ? 60000 : random % 10 == 0 ? 3000 : random % 60;
}

std::string Encoded(io::CBlock const & block) {
  std::string bytes;
  return io::EncodeBlock(block, io::Form::Binary, io::kExactDigits, bytes) ? bytes : std::string();
}

std::optional<std::uint64_t> TagOf(io::CBlock const & block) {
  io::CBlock_named_value value(L"Tag", io::CBlock_value());
  block >> value;
  long long tag = 0;
  return block.Found() && value.Value().Query(tag) ? std::optional(static_cast<std::uint64_t>(tag)) : std::nullopt;
}

} // namespace

std::uint64_t NextRandom(std::uint64_t & state) {
  std::uint64_t mixed = state += 0x9E3779B97F4A7C15;
  mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9;
  mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EB;
  return mixed ^ mixed >> 31;
}

LibraryPlay::Step LibraryPlay::At(std::uint64_t number) const {
  std::uint64_t state = m_seed * 0x100000001B3 + number;
  Step step;
  step.kind = KindFor(NextRandom(state));
  std::uint64_t names = 0;
  if (step.kind == Kind::Save)
    names = 1;
  else if (step.kind == Kind::Batch || step.kind == Kind::Delete)
    names = 1 + NextRandom(state) % 4;
  // Neighbours, so that a step never bears a name twice.
  std::uint64_t const first = NextRandom(state) % kNames;
  for (std::uint64_t i = 0; i < names; ++i) {
    step.names.push_back(AString::Format(L"SolutionBlock%lu", (first + i) % kNames));
    std::uint64_t const random = NextRandom(state);
    step.tags.push_back((random >> 32) << 20 | CountFor(random & 0xFFFFFFF, m_sizes));
  }
  return step;
}

CStreamioLibrary::LibIOReturn LibraryPlay::Do(std::uint64_t number, CStreamioLibWritePrivate & library) const {
  Step const step = At(number);
  io::CBlock batch;
  switch (step.kind) {
  case Kind::Save: {
    io::CBlock block = BlockOf(step.names[0], step.tags[0]);
    return library.SaveDefinition(block);
  }
  case Kind::Batch:
    for (std::size_t i = 0; i < step.names.size(); ++i)
      batch << BlockOf(step.names[i], step.tags[i]);
    return library.SaveBlocks(batch);
  case Kind::Delete:
    return library.DeleteBlocks(step.names);
  case Kind::Update:
    return library.UpdateOriginal();
  case Kind::Commit:
    return library.CommitAll(false);
  case Kind::Compact:
    return library.CommitAll(true);
  case Kind::Rewrite:
    return library.RewriteLibrary(number % 2 == 0);
  }
  return CStreamioLibrary::kLibSuccess;
}

void LibraryPlay::Apply(Step const & step, LibraryContent & content) {
  for (std::size_t i = 0; i < step.names.size(); ++i)
    if (step.kind == Kind::Delete)
      content.erase(step.names[i]);
    else
      content[step.names[i]] = step.tags[i];
}

LibraryContent LibraryPlay::After(std::uint64_t steps) const {
  LibraryContent content;
  for (std::uint64_t number = 1; number <= steps; ++number)
    Apply(At(number), content);
  return content;
}

std::uint64_t LibraryPlay::SafeAfter(std::uint64_t steps) const {
  while (steps > 0 && At(steps).kind == Kind::Delete)
    --steps;
  return steps;
}

std::optional<std::uint64_t> LibraryPlay::Find(LibraryContent const & content, std::uint64_t first,
                                               std::uint64_t last) const {
  LibraryContent model = After(first);
  std::optional<std::uint64_t> found;
  for (std::uint64_t number = first; number <= last; ++number) {
    if (number > first)
      Apply(At(number), model);
    if (model == content)
      found = number;
  }
  return found;
}

io::CBlock LibraryPlay::BlockOf(AString const & name, std::uint64_t tag) {
  io::CBlock block(name);
  block << io::CBlock_named_value(L"Tag", io::CBlock_value(static_cast<long>(tag)));
  std::vector<double> values(tag & kCountMask);
  std::uint64_t state = tag;
  for (auto & value : values)
    value = static_cast<double>(NextRandom(state)) * 0x1p-70;
  io::CBlock_func run(L"Data");
  run.AppendRun(std::move(values));
  block << run;
  return block;
}

std::optional<LibraryContent> LibraryPlay::ContentOf(CStreamioLibWritePrivate & library, std::string & complaint) {
  io::CBlock all;
  if (library.LoadBlocks(all, false) != CStreamioLibrary::kLibSuccess) {
    complaint = "not everything can be read: " + text::ToUtf8(library.LastError());
    return {};
  }
  LibraryContent content;
  for (auto const & child : all) {
    io::CBlock_ptr<io::CBlock> const listed(child);
    io::CBlock block(listed->Name());
    auto const tag = TagOf(*listed);
    bool const isLoaded = library.LoadDefinition(block) == CStreamioLibrary::kLibSuccess;
    if (!tag || !isLoaded || Encoded(*listed) != Encoded(BlockOf(listed->Name(), *tag)) ||
        Encoded(block) != Encoded(*listed)) {
      complaint = "a block came back changed: " + text::ToUtf8(listed->Name());
      return {};
    }
    content[listed->Name()] = *tag;
  }
  return content;
}

std::string LibraryPlay::TextOf(LibraryContent const & content) {
  std::string out;
  for (auto const & [name, tag] : content)
    out += text::ToUtf8(name) + ':' + std::to_string(tag) + ' ';
  return out;
}

} // namespace support
