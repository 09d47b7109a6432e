#include "basekit/io/RecordIndex.h"

#include "basekit/io/RecordFormat.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

namespace {

using io::RecordIndex;

std::string Folded(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(), [](char c) { return static_cast<char>(std::tolower(c)); });
  return name;
}

// A file of index records, and what a plain map says that it should tell.
class IndexModel {
public:
  IndexModel(bool keepsDeletions, bool isBinary, unsigned seed)
      : m_keepsDeletions(keepsDeletions), m_isBinary(isBinary), m_index(keepsDeletions), m_random(seed) {}

  void Change(std::size_t names) {
    auto const count = 1 + m_random() % 4;
    std::vector<RecordIndex::Change> changes;
    for (std::size_t i = 0; i < count; ++i)
      changes.push_back(Random(names));
    if (m_random() % 3 == 0) {
      auto const plan = m_index.PlanRecord(changes, m_isBinary);
      m_index.Apply(changes);
      m_index.Accept(plan, m_offset);
      m_records[m_offset] = plan.payload;
      m_offset += 1000;
    } else {
      m_index.Apply(changes);
    }
    for (auto const & change : changes)
      m_model[Folded(change.name)] = change;
  }

  void Reopen() {
    auto const plan = m_index.PlanRecord({}, m_isBinary);
    m_index.Accept(plan, m_offset);
    m_records[m_offset] = plan.payload;
    RecordIndex read(m_keepsDeletions);
    for (std::uint64_t at = m_offset; at != 0;) {
      std::uint64_t previous = 0;
      ASSERT_TRUE(read.TakeSegment(m_records.at(at), m_isBinary, at, previous));
      at = previous;
    }
    read.EndChain();
    m_index = read;
    m_offset += 1000;
  }

  void Check() const {
    std::size_t blocks = 0;
    std::uint64_t bytes = 0;
    for (auto const & [folded, change] : m_model) {
      auto const * const found = m_index.Find(folded);
      bool const isThere = change.place.IsBlock() || m_keepsDeletions;
      ASSERT_EQ(found != nullptr, isThere) << folded;
      blocks += change.place.IsBlock();
      bytes += change.place.IsBlock() ? change.place.RecordSize() : 0;
      if (!found)
        continue;
      EXPECT_EQ(found->offset, change.place.offset);
      EXPECT_EQ(found->payloadChecksum, change.place.payloadChecksum);
      RecordIndex::Named named;
      ASSERT_TRUE(m_index.Find(folded, named));
      EXPECT_EQ(named.name, change.name);
    }
    EXPECT_EQ(m_index.Blocks(), blocks);
    EXPECT_EQ(m_index.LiveBytes(), bytes);
    auto const inOrder = m_index.InFileOrder();
    ASSERT_EQ(inOrder.size(), blocks);
    EXPECT_TRUE(std::is_sorted(inOrder.begin(), inOrder.end(),
                               [](auto const & a, auto const & b) { return a.place.offset < b.place.offset; }));
  }
  std::size_t Records() const { return m_records.size(); }

private:
  RecordIndex::Change Random(std::size_t names) {
    RecordIndex::Change change;
    change.name = "Block" + std::to_string(m_random() % names);
    if (m_random() % 2)
      change.name = Folded(change.name);
    change.place.kind = static_cast<std::uint8_t>(m_random() % 3 ? io::kBlockRecord : io::kDeleteRecord);
    change.place.offset = m_offset++;
    change.place.payloadLength = m_random() % 1000;
    change.place.payloadChecksum = static_cast<std::uint32_t>(m_random());
    change.place.nameLength = static_cast<std::uint32_t>(change.name.size());
    return change;
  }

  bool m_keepsDeletions;
  bool m_isBinary;
  RecordIndex m_index;
  std::map<std::string, RecordIndex::Change> m_model;
  std::map<std::uint64_t, std::string> m_records;
  std::mt19937 m_random;
  std::uint64_t m_offset = 1;
};

} // namespace

TEST(RecordIndex, TellsWhatAPlainMapTellsUnderRandomChangesAndReopenings) {
  for (unsigned seed = 0; seed < 40; ++seed) {
    IndexModel model(seed % 2 != 0, seed % 4 < 2, seed);
    for (int step = 0; step < 120; ++step) {
      model.Change(1 + seed * 5);
      if (step % 17 == 16)
        model.Reopen();
      if (step % 5 == 0) {
        ASSERT_NO_FATAL_FAILURE(model.Check()) << seed << ' ' << step;
      }
    }
    model.Check();
  }
}

TEST(RecordIndex, RefusesRecordsThatAreCutOrPointForward) {
  for (bool const isBinary : {false, true}) {
    RecordIndex index;
    RecordIndex::Change change;
    change.name = "Block";
    change.place.kind = io::kBlockRecord;
    change.place.offset = 76;
    change.place.nameLength = 5;
    auto const payload = index.PlanRecord({change}, isBinary).payload;
    std::uint64_t previous = 0;
    for (std::size_t size = 0; size < payload.size(); ++size) {
      RecordIndex read;
      bool const isHeadAlone = size == payload.find(' ') + 17;
      ASSERT_EQ(read.TakeSegment(payload.substr(0, size), isBinary, 500, previous), isHeadAlone) << size;
    }
    RecordIndex read;
    EXPECT_FALSE(read.TakeSegment(payload, isBinary, 76, previous)) << "a block behind the index that names it";
    EXPECT_TRUE(RecordIndex().TakeSegment(payload, isBinary, 77, previous));
  }
}

TEST(RecordIndex, ForgetsDeletedNamesWhenNoOlderRecordCouldBringThemBack) {
  RecordIndex index;
  std::uint64_t offset = 100;
  for (int round = 0; round < 50; ++round) {
    std::vector<RecordIndex::Change> changes(100);
    for (std::size_t i = 0; i < changes.size(); ++i) {
      changes[i].name = "Name" + std::to_string(round * 100) + "-" + std::to_string(i);
      changes[i].place.nameLength = static_cast<std::uint32_t>(changes[i].name.size());
      changes[i].place.kind = io::kBlockRecord;
      changes[i].place.offset = offset++;
    }
    index.Apply(changes);
    for (auto & change : changes) {
      change.place.kind = io::kDeleteRecord;
      change.place.offset = offset++;
    }
    index.Apply(changes);
    auto const plan = index.PlanRecord({}, true);
    EXPECT_LE(plan.payload.size(), 10000u);
    index.Accept(plan, offset++);
  }
  EXPECT_TRUE(index.IsEmpty());
}
