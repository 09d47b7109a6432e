// A cache of sim values in a block:
//
//     SimValue {                              or Axis, whose text is the name of the variable
//       Version = 17
//       Text = "S21"
//       Context(3, 0, 2, 0, 1, 1, 0, 0)       of a sim value
//       Points(0, 1, 2)                       of the segments: the places of their points, the numbers of samples,
//       Counts(2, 0, 1)                       the variations, and which of them are missing
//       Variations ["x=1", "x=2", "x=3"]
//       Missing(1)
//       Complex = true
//       Numbers(0.5, -0.25, 0.4, -0.3)        in SI units; of complex numbers the parts in turn
//       Checksum = 305419896                  of all that stands before it
//     }

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/io/Checksum.h"
#include "plotkit/cache/CSimValueCache.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

wchar_t const * const kSimValue = L"SimValue";
wchar_t const * const kAxis = L"Axis";
wchar_t const * const kVersion = L"Version";
wchar_t const * const kText = L"Text";
wchar_t const * const kContext = L"Context";
wchar_t const * const kPoints = L"Points";
wchar_t const * const kCounts = L"Counts";
wchar_t const * const kVariations = L"Variations";
wchar_t const * const kMissing = L"Missing";
wchar_t const * const kComplex = L"Complex";
wchar_t const * const kNumbers = L"Numbers";
wchar_t const * const kChecksum = L"Checksum";

using Numbers = CSimValueCacheV::Numbers;

struct Record {
  bool isAxis = false;
  long version = 0;
  AString text;
  SimValueContext context;
  Numbers numbers;
};

class Digest {
public:
  void Add(std::string_view bytes) { m_sum = io::Checksum(bytes, m_sum); }
  template <class Number> void Add(Number const & number) {
    Add({reinterpret_cast<char const *>(&number), sizeof number});
  }
  void Add(AString const & text) {
    Add(text.size());
    Add({reinterpret_cast<char const *>(text.c_str()), text.size() * sizeof(wchar_t)});
  }
  /// Of a nan no more is kept than that it is one.
  void AddNumbers(double const * numbers, std::size_t count) {
    std::array<double, 256> part;
    for (std::size_t done = 0; done < count; done += part.size()) {
      std::size_t const length = std::min(part.size(), count - done);
      for (std::size_t place = 0; place < length; ++place)
        part[place] = std::isnan(numbers[done + place]) ? std::nan("") : numbers[done + place];
      Add({reinterpret_cast<char const *>(part.data()), length * sizeof(double)});
    }
  }
  long Sum() const { return static_cast<long>(m_sum); }

private:
  std::uint32_t m_sum = 0;
};

/// The numbers one behind the other, the parts of complex ones in turn.
std::span<double const> Parts(ValueColumn const & column) {
  if (!column.IsComplex())
    return column.GetReals();
  return {reinterpret_cast<double const *>(column.GetComplexes().data()), 2 * column.GetCount()};
}

long ChecksumOf(Record const & record) {
  Digest digest;
  digest.Add(record.isAxis);
  digest.Add(record.version);
  digest.Add(record.text);
  if (!record.isAxis) {
    SimValueContext const & context = record.context;
    for (int const word : {context.GetKind(), static_cast<int>(context.GetCalculationType()),
                           static_cast<int>(context.GetFirst()), static_cast<int>(context.GetSecond())})
      digest.Add(word);
    digest.AddNumbers(context.GetNumbers().data(), context.GetNumbers().size());
  }
  for (SampleSegments::Segment const & segment : record.numbers.segments.Get()) {
    digest.Add(segment.point);
    digest.Add(segment.count);
    digest.Add(segment.isMissing);
    digest.Add(segment.variation);
  }
  std::span<double const> const parts = Parts(record.numbers.column);
  digest.Add(record.numbers.column.IsComplex());
  digest.AddNumbers(parts.data(), parts.size());
  return digest.Sum();
}

void WriteIntegers(io::CBlock & block, wchar_t const * name, std::vector<long> const & numbers) {
  io::CBlock_ptr<io::CBlock_func> const func(new io::CBlock_func(name));
  func->AppendIntegers(numbers);
  block << func;
}

void WriteSegments(io::CBlock & block, SampleSegments const & segments) {
  std::vector<long> points;
  std::vector<long> counts;
  std::vector<long> missing;
  std::vector<AString> variations;
  for (SampleSegments::Segment const & segment : segments.Get()) {
    if (segment.isMissing)
      missing.push_back(static_cast<long>(points.size()));
    points.push_back(static_cast<long>(segment.point));
    counts.push_back(static_cast<long>(segment.count));
    variations.push_back(segment.variation);
  }
  WriteIntegers(block, kPoints, points);
  WriteIntegers(block, kCounts, counts);
  io::CBlock_ptr<io::CBlock_vec> const vec(new io::CBlock_vec(kVariations));
  vec->AppendValues(variations);
  block << vec;
  WriteIntegers(block, kMissing, missing);
}

void WriteRecord(io::CBlock & block, Record const & record) {
  io::CBlock_ptr<io::CBlock> const child(new io::CBlock(record.isAxis ? kAxis : kSimValue));
  *child << io::named(kVersion, record.version) << io::named(kText, record.text);
  if (!record.isAxis) {
    io::CBlock_func context{AString(kContext)};
    record.context.WriteTo(context);
    *child << context;
  }
  WriteSegments(*child, record.numbers.segments);
  *child << io::named(kComplex, record.numbers.column.IsComplex());
  io::CBlock_ptr<io::CBlock_func> const numbers(new io::CBlock_func(kNumbers));
  numbers->AppendReals(Parts(record.numbers.column));
  *child << numbers << io::named(kChecksum, ChecksumOf(record));
  block << child;
}

template <class Item> Item const * Find(io::CBlock const & block, wchar_t const * name, io::CBlock_item::Kind kind) {
  return static_cast<Item const *>(block.FindItem(name, kind));
}

/// False when there are other things than whole numbers from 0 to the limit.
bool ReadIntegers(io::CBlock const & block, wchar_t const * name, std::size_t limit,
                  std::vector<std::size_t> & numbers) {
  auto const * const func = Find<io::CBlock_func>(block, name, io::CBlock_item::Kind::Func);
  if (!func)
    return false;
  std::span<long const> const run = func->Integers(func->begin());
  if (run.size() != func->ArgumentCount())
    return false;
  for (long const number : run) {
    if (number < 0 || static_cast<std::size_t>(number) > limit)
      return false;
    numbers.push_back(static_cast<std::size_t>(number));
  }
  return true;
}

bool ReadSegments(io::CBlock const & block, SampleSegments & segments, std::size_t sampleCount) {
  std::vector<std::size_t> points;
  std::vector<std::size_t> counts;
  std::vector<std::size_t> missing;
  std::vector<AString> variations;
  auto const * const vec = Find<io::CBlock_vec>(block, kVariations, io::CBlock_item::Kind::Vec);
  if (!vec || !vec->QueryValues(variations) || !ReadIntegers(block, kPoints, SIZE_MAX, points) ||
      !ReadIntegers(block, kCounts, sampleCount, counts) || points.size() != variations.size() ||
      counts.size() != variations.size() || !ReadIntegers(block, kMissing, variations.size(), missing))
    return false;
  std::vector<bool> isMissing(variations.size() + 1);
  for (std::size_t const place : missing)
    isMissing[place] = true;
  for (std::size_t place = 0; place < variations.size(); ++place) {
    if (counts[place] > sampleCount - segments.GetSampleCount())
      return false;
    segments.Add(points[place], variations[place], counts[place], isMissing[place]);
  }
  return segments.empty() || segments.GetSampleCount() == sampleCount;
}

bool ReadColumn(io::CBlock const & block, ValueColumn & column) {
  auto const * const func = static_cast<io::CBlock_func const *>(block.FindItem(kNumbers, io::CBlock_item::Kind::Func));
  bool isComplex = false;
  block >> io::named(kComplex, isComplex);
  if (!func || !block.Found())
    return false;
  std::vector<double> parts;
  auto place = func->begin();
  func->QueryUnamedValues(place, parts);
  if (place != func->end() || (isComplex && parts.size() % 2 != 0))
    return false;
  if (!isComplex)
    column.Append(parts);
  else
    for (std::size_t part = 0; part < parts.size(); part += 2)
      column.Append(std::complex<double>(parts[part], parts[part + 1]));
  return true;
}

template <class T> bool ReadNamed(io::CBlock const & block, wchar_t const * name, T & value) {
  block >> io::named(name, value);
  return block.Found();
}

bool ReadRecord(io::CBlock const & block, Record & record) {
  if (!ReadNamed(block, kVersion, record.version) || !ReadNamed(block, kText, record.text))
    return false;
  if (!record.isAxis) {
    auto const * const context = Find<io::CBlock_func>(block, kContext, io::CBlock_item::Kind::Func);
    auto place = context ? context->begin() : io::CBlock_func::iterator();
    if (!context || !record.context.ReadFrom(*context, place))
      return false;
  }
  long checksum = 0;
  return ReadColumn(block, record.numbers.column) &&
         ReadSegments(block, record.numbers.segments, record.numbers.column.GetCount()) &&
         ReadNamed(block, kChecksum, checksum) && checksum == ChecksumOf(record);
}

} // namespace

void CSimValueCacheV::Write(io::CBlock & block) const {
  for (auto const & [number, version] : m_versions) {
    for (auto const & [variable, numbers] : version.axes)
      WriteRecord(block, {true, number, variable, {}, numbers});
    for (auto const & [text, entries] : version.values)
      for (Entry const & entry : entries)
        WriteRecord(block, {false, number, text, entry.context, entry.numbers});
  }
}

io::ReadError CSimValueCacheV::Read(io::CBlock const & block, long version) {
  CSimValueCacheV read;
  bool isAnythingStale = false;
  for (auto const & item : block) {
    bool const isAxis = AString::MatchNoCase(item->Name(), kAxis);
    if (!item->IsBlock() || (!isAxis && !AString::MatchNoCase(item->Name(), kSimValue)))
      continue;
    Record record;
    record.isAxis = isAxis;
    if (!ReadRecord(static_cast<io::CBlock const &>(*item), record))
      return io::kBadContent;
    if (record.version != version) {
      isAnythingStale = true;
      continue;
    }
    (isAxis ? read.AxisForEdit(version, record.text) : read.At(version, record.text, record.context)) =
        std::move(record.numbers);
  }
  if (read.empty())
    return isAnythingStale ? io::kNotFound : io::kNoError;
  m_versions[version] = std::move(read.m_versions[version]);
  return io::kNoError;
}
