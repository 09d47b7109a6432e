#include "bench/store/RawStore.h"

#include "basekit/io/Checksum.h"
#include "bench/support/Measure.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/uio.h>
#include <unistd.h>

namespace bench {

namespace {

constexpr std::uint32_t kMagic = 0x57415231;
constexpr std::uint64_t kStart = 8;
/// More pieces than a gathered write takes go in several.
constexpr std::size_t kBlocksPerWrite = 300;
constexpr std::size_t kCopyBuffer = 1 << 20;
enum Kind : std::uint16_t { kBlock = 1, kDelete = 2, kIndex = 3 };
enum Flag : std::uint16_t { kMoreFollows = 1, kWholeIndex = 2 };

template <class Record> std::string_view BytesOf(Record const & record) {
  return {reinterpret_cast<char const *>(&record), sizeof record};
}
std::string_view BytesOf(std::span<double const> values) {
  return {reinterpret_cast<char const *>(values.data()), values.size_bytes()};
}

/// Behind an index, so that it is found from the end of the file.
struct Trailer {
  std::uint64_t index = 0;
  std::uint32_t magic = kMagic;
  std::uint32_t sum = 0;

  std::uint32_t Sum() const { return io::Checksum(BytesOf(*this).substr(0, 12)); }
};

/// What an index says of a name; offset 0: it was deleted.  The name follows.
struct Entry {
  std::uint64_t offset = 0;
  std::uint32_t nameLength = 0;
  std::uint32_t count = 0;
};

iovec Piece(std::string_view bytes) { return {const_cast<char *>(bytes.data()), bytes.size()}; }

void WriteAt(int file, std::uint64_t offset, std::span<iovec const> pieces) {
  std::size_t sum = 0;
  for (auto const & piece : pieces)
    sum += piece.iov_len;
  auto const written = ::pwritev(file, pieces.data(), static_cast<int>(pieces.size()), static_cast<off_t>(offset));
  Require(written == static_cast<ssize_t>(sum), "raw: cannot write");
}

std::size_t ReadAt(int file, std::uint64_t offset, std::span<char> into) {
  auto const got = ::pread(file, into.data(), into.size(), static_cast<off_t>(offset));
  Require(got >= 0, "raw: cannot read");
  return static_cast<std::size_t>(got);
}

} // namespace

struct RawStore::Header {
  std::uint32_t magic = kMagic;
  std::uint16_t kind = kBlock;
  std::uint16_t flags = 0;
  std::uint32_t nameLength = 0;
  std::uint32_t nameSum = 0;
  std::uint64_t length = 0;
  std::uint32_t contentSum = 0;
  std::uint32_t sum = 0;

  Header() = default;
  Header(Kind itsKind, std::string_view name, std::string_view content, unsigned itsFlags)
      : kind(itsKind), flags(static_cast<std::uint16_t>(itsFlags)), nameLength(static_cast<std::uint32_t>(name.size())),
        nameSum(io::Checksum(name)), length(content.size()), contentSum(io::Checksum(content)), sum(Sum()) {}

  std::uint32_t Sum() const { return io::Checksum(BytesOf(*this).substr(0, 28)); }
  bool IsGood() const { return magic == kMagic && sum == Sum(); }
  std::uint64_t Whole() const { return sizeof(Header) + nameLength + length; }
};

RawStore::~RawStore() {
  if (m_file >= 0)
    ::close(m_file);
}

void RawStore::Open(std::string const & path, bool recovers) {
  m_path = path;
  m_file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  Require(m_file >= 0 && ::flock(m_file, LOCK_EX | LOCK_NB) == 0, "raw: cannot open " + path);
  m_end = static_cast<std::uint64_t>(::lseek(m_file, 0, SEEK_END));
  if (m_end < kStart) {
    std::uint64_t const start = kMagic;
    iovec const piece = Piece(BytesOf(start));
    WriteAt(m_file, 0, std::span(&piece, 1));
    m_end = kStart;
    return;
  }
  Trailer trailer;
  ReadAt(m_file, m_end - std::min<std::uint64_t>(m_end, sizeof trailer),
         std::span(reinterpret_cast<char *>(&trailer), sizeof trailer));
  if (trailer.magic == kMagic && trailer.sum == trailer.Sum()) {
    m_lastIndex = trailer.index;
    if (ReadIndexes())
      return;
  }
  m_lastIndex = 0;
  Scan(kStart);
  if (recovers)
    return;
  m_index.clear();
  m_changed.clear();
  m_end = m_lastIndex == 0 ? kStart : m_indexed;
  Require(m_lastIndex == 0 || ReadIndexes(), "raw: the index is damaged");
  Require(::ftruncate(m_file, static_cast<off_t>(m_end)) == 0, "raw: cannot cut");
}

std::vector<std::string> RawStore::Names() const {
  std::vector<std::string> names;
  names.reserve(m_index.size());
  for (auto const & [name, place] : m_index)
    names.push_back(name);
  return names;
}

// From the newest index back to a whole one, then forward: later entries replace earlier ones.
bool RawStore::ReadIndexes() {
  std::vector<std::string> contents;
  for (std::uint64_t at = m_lastIndex; at != 0;) {
    Header header;
    std::string content;
    if (!ReadIndex(at, header, content))
      return false;
    std::memcpy(&at, content.data(), sizeof at);
    if (header.flags & kWholeIndex)
      at = 0;
    contents.push_back(std::move(content));
  }
  m_index.reserve(contents.back().size() / 48);
  for (auto content = contents.rbegin(); content != contents.rend(); ++content)
    Apply(*content);
  return true;
}

bool RawStore::ReadIndex(std::uint64_t offset, Header & header, std::string & content) {
  ReadAt(m_file, offset, std::span(reinterpret_cast<char *>(&header), sizeof header));
  if (!header.IsGood() || header.kind != kIndex || offset + header.Whole() > m_end)
    return false;
  content.resize(header.length);
  return ReadAt(m_file, offset + sizeof header, content) == content.size() &&
         io::Checksum(content) == header.contentSum;
}

void RawStore::Apply(std::string_view content) {
  for (content.remove_prefix(8); !content.empty();) {
    Entry entry;
    std::memcpy(&entry, content.data(), sizeof entry);
    std::string name(content.substr(sizeof entry, entry.nameLength));
    content.remove_prefix(sizeof entry + entry.nameLength);
    if (entry.offset == 0)
      m_index.erase(name);
    else
      m_index[std::move(name)] = {entry.offset, entry.nameLength, entry.count};
  }
}

// One small read a record; a group counts once its last record is there.
void RawStore::Scan(std::uint64_t from) {
  std::array<char, 160> buffer;
  std::vector<std::pair<std::string, Place>> group;
  std::uint64_t const size = m_end;
  m_end = from;
  while (from + sizeof(Header) <= size) {
    std::size_t const got = ReadAt(m_file, from, buffer);
    Header header;
    std::memcpy(&header, buffer.data(), sizeof header);
    if (!header.IsGood() || from + header.Whole() > size)
      break;
    std::string name(buffer.data() + sizeof header, std::min<std::size_t>(header.nameLength, got - sizeof header));
    if (std::size_t const have = name.size(); have < header.nameLength) {
      name.resize(header.nameLength);
      ReadAt(m_file, from + sizeof header + have, std::span(name).subspan(have));
    }
    if (io::Checksum(name) != header.nameSum)
      break;
    bool const isIndex = header.kind == kIndex;
    if (!isIndex)
      group.emplace_back(std::move(name), Place{header.kind == kDelete ? 0 : from, header.nameLength,
                                                static_cast<std::uint32_t>(header.length / sizeof(double))});
    if (isIndex)
      m_lastIndex = from;
    from += header.Whole() + (isIndex ? sizeof(Trailer) : 0);
    if (header.flags & kMoreFollows)
      continue;
    for (auto & [itsName, place] : group) {
      if (place.offset == 0)
        m_index.erase(itsName);
      else
        m_index[itsName] = place;
      m_changed.push_back(std::move(itsName));
    }
    group.clear();
    m_end = from;
    if (isIndex) {
      m_indexed = from;
      m_changed.clear();
    }
  }
}

void RawStore::Save(std::span<Block const> blocks) {
  std::vector<Header> headers;
  headers.reserve(blocks.size());
  for (auto const & block : blocks)
    headers.emplace_back(kBlock, block.name, BytesOf(block.values), &block == &blocks.back() ? 0 : kMoreFollows);
  std::uint64_t at = m_end;
  for (std::size_t first = 0; first < blocks.size(); first += kBlocksPerWrite) {
    std::size_t const count = std::min(kBlocksPerWrite, blocks.size() - first);
    Append(at, std::span(headers).subspan(first, count), blocks.subspan(first, count));
    for (std::size_t k = first; k < first + count; ++k)
      at += headers[k].Whole();
  }
  for (std::size_t k = 0; k < blocks.size(); ++k) {
    std::string name(blocks[k].name);
    m_index[name] = {m_end, headers[k].nameLength, static_cast<std::uint32_t>(blocks[k].values.size())};
    m_changed.push_back(std::move(name));
    m_end += headers[k].Whole();
  }
}

void RawStore::Append(std::uint64_t offset, std::span<Header const> headers, std::span<Block const> blocks) {
  std::array<iovec, 3 * kBlocksPerWrite> pieces;
  std::size_t count = 0;
  for (std::size_t k = 0; k < blocks.size(); ++k) {
    pieces[count++] = Piece(BytesOf(headers[k]));
    pieces[count++] = Piece(blocks[k].name);
    if (!blocks[k].values.empty())
      pieces[count++] = Piece(BytesOf(blocks[k].values));
  }
  WriteAt(m_file, offset, std::span(pieces).first(count));
}

void RawStore::Load(std::string const & name, std::vector<double> & values) {
  auto const found = m_index.find(name);
  Require(found != m_index.end(), "raw: there is no block " + name);
  Place const & place = found->second;
  std::string head(sizeof(Header) + place.nameLength, '\0');
  values.resize(place.count);
  std::array<iovec, 2> const pieces = {Piece(head), Piece(BytesOf(std::span<double const>(values)))};
  auto const got = ::preadv(m_file, pieces.data(), 2, static_cast<off_t>(place.offset));
  Header header;
  std::memcpy(&header, head.data(), sizeof header);
  bool const isGood = got == static_cast<ssize_t>(head.size() + place.count * sizeof(double)) && header.IsGood() &&
                      name == std::string_view(head).substr(sizeof header) &&
                      header.length == place.count * sizeof(double) &&
                      io::Checksum(BytesOf(std::span<double const>(values))) == header.contentSum;
  Require(isGood, "raw: a block is damaged: " + name);
}

void RawStore::Delete(std::span<std::string const> names) {
  std::string bytes;
  for (auto const & name : names) {
    bytes += BytesOf(Header(kDelete, name, {}, &name == &names.back() ? 0 : kMoreFollows));
    bytes += name;
    m_index.erase(name);
    m_changed.push_back(name);
  }
  iovec const piece = Piece(bytes);
  WriteAt(m_file, m_end, std::span(&piece, 1));
  m_end += bytes.size();
}

void RawStore::Commit() {
  m_indexedSinceWhole += m_changed.size();
  AppendIndex(m_lastIndex == 0 || m_indexedSinceWhole * 2 > m_index.size());
  Require(::fdatasync(m_file) == 0, "raw: cannot sync");
}

void RawStore::AppendIndex(bool isWhole) {
  std::string content;
  std::uint64_t const previous = isWhole ? 0 : m_lastIndex;
  content += BytesOf(previous);
  auto const add = [&](std::string const & name, Place const & place) {
    content += BytesOf(Entry{place.offset, static_cast<std::uint32_t>(name.size()), place.count});
    content += name;
  };
  if (isWhole)
    content.reserve(m_index.size() * 48);
  if (isWhole)
    for (auto const & [name, place] : m_index)
      add(name, place);
  else
    for (auto const & name : m_changed) {
      auto const found = m_index.find(name);
      add(name, found == m_index.end() ? Place() : found->second);
    }
  Header const header(kIndex, {}, content, isWhole ? kWholeIndex : 0);
  Trailer trailer;
  trailer.index = m_end;
  trailer.sum = trailer.Sum();
  std::array<iovec, 3> const pieces = {Piece(BytesOf(header)), Piece(content), Piece(BytesOf(trailer))};
  WriteAt(m_file, m_end, pieces);
  m_lastIndex = m_end;
  m_end += header.Whole() + sizeof trailer;
  m_changed.clear();
  if (isWhole)
    m_indexedSinceWhole = 0;
}

// Live records in the order of the file, each verified.
void RawStore::Rewrite() {
  std::vector<Index::value_type *> live;
  live.reserve(m_index.size());
  for (auto & entry : m_index)
    live.push_back(&entry);
  std::sort(live.begin(), live.end(), [](auto * a, auto * b) { return a->second.offset < b->second.offset; });
  std::string const newPath = m_path + ".new";
  int const file = ::open(newPath.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  Require(file >= 0 && ::flock(file, LOCK_EX | LOCK_NB) == 0, "raw: cannot make " + newPath);
  std::uint64_t const start = kMagic;
  std::string buffer(BytesOf(start));
  std::uint64_t written = 0;
  auto const flush = [&] {
    iovec const piece = Piece(buffer);
    WriteAt(file, written, std::span(&piece, 1));
    written += buffer.size();
    buffer.clear();
  };
  for (auto * const entry : live) {
    Place & place = entry->second;
    std::size_t const whole = sizeof(Header) + place.nameLength + place.count * sizeof(double);
    std::size_t const before = buffer.size();
    buffer.resize(before + whole);
    std::size_t const got = ReadAt(m_file, place.offset, std::span(buffer).subspan(before));
    Header header;
    std::memcpy(&header, buffer.data() + before, sizeof header);
    auto const content = std::string_view(buffer).substr(before + sizeof header + place.nameLength);
    Require(got == whole && header.IsGood() && io::Checksum(content) == header.contentSum, "raw: a block is damaged");
    header.flags = 0;
    header.sum = header.Sum();
    std::memcpy(buffer.data() + before, &header, sizeof header);
    place.offset = written + before;
    if (buffer.size() > kCopyBuffer)
      flush();
  }
  flush();
  ::close(m_file);
  m_file = file;
  m_end = written;
  AppendIndex(true);
  Require(::fdatasync(m_file) == 0 && ::rename(newPath.c_str(), m_path.c_str()) == 0, "raw: cannot replace the file");
  int const folder = ::open(m_path.substr(0, m_path.rfind('/')).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  Require(folder >= 0 && ::fsync(folder) == 0, "raw: cannot sync the folder");
  ::close(folder);
}

} // namespace bench
