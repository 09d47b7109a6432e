// Random sequences of what callers do with a block, checked against a plain list.

#include "basekit/io/CNamed_value_manip.h"
#include "tests/basekit/io/RandomTree.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>
#include <vector>

using namespace io;

namespace {

/// A block of named values beside the list of names and values that it must be.
class Sequence {
public:
  explicit Sequence(unsigned seed) : m_random(seed) {}

  void Step() {
    switch (m_random.Below(8)) {
    case 0:
    case 1:
    case 2:
      return Append();
    case 3:
      return Rename();
    case 4:
      return SetValue();
    case 5:
      m_block = CBlock(m_block);
      return;
    case 6:
      return LookUp();
    default:
      if (m_random.Below(20) == 0) {
        m_block.Clear();
        m_model.clear();
      }
    }
  }

  void Check() const {
    ASSERT_EQ(static_cast<std::size_t>(m_block.Size()), m_model.size());
    std::size_t at = 0;
    for (auto const & child : m_block) {
      ASSERT_EQ(child->Name(), m_model[at].name);
      long value = 0;
      ASSERT_TRUE(child->Query(value));
      ASSERT_EQ(value, m_model[at].value);
      ++at;
    }
    CBlock read;
    ASSERT_TRUE(read.Unpack(m_block.Pack()));
    ASSERT_EQ(read.Pack(), m_block.Pack());
  }

private:
  struct Pair {
    AString name;
    long value;
  };

  // Few names, in both cases, so that they meet each other.
  AString Name() {
    static wchar_t const * const names[] = {L"Alpha",         L"ALPHA",         L"beta", L"Beta",
                                            L"\x00c9t\x00e9", L"\x00e9T\x00c9", L""};
    return names[m_random.Below(7)];
  }

  void Append() {
    m_model.push_back({Name(), ++m_last});
    m_block << CBlock_named_value(m_model.back().name, CBlock_value(m_last));
  }

  void Rename() {
    if (m_model.empty())
      return;
    auto const at = static_cast<std::size_t>(m_random.Below(static_cast<int>(m_model.size())));
    m_model[at].name = Name();
    (*(m_block.begin() + static_cast<std::ptrdiff_t>(at)))->Name(m_model[at].name);
  }

  void SetValue() {
    if (m_model.empty())
      return;
    auto const at = static_cast<std::size_t>(m_random.Below(static_cast<int>(m_model.size())));
    CBlock_ptr<CBlock_named_value> const child(*(m_block.begin() + static_cast<std::ptrdiff_t>(at)));
    m_model[at].value = ++m_last;
    child->Value() = CBlock_value(m_last);
  }

  void LookUp() const {
    auto const name = const_cast<Sequence *>(this)->Name();
    long found = -1;
    m_block >> named(name, found);
    std::vector<long> expected;
    for (auto const & pair : m_model)
      if (AString::MatchNoCase(pair.name, name))
        expected.push_back(pair.value);
    ASSERT_EQ(m_block.Found(), !expected.empty());
    ASSERT_EQ(found, expected.empty() ? -1 : expected.front());
    std::vector<long> range;
    for (auto place = m_block.begin(name); place != m_block.end(name); ++place) {
      long value = 0;
      ASSERT_TRUE(m_block.Item(place)->Query(value));
      range.push_back(value);
    }
    ASSERT_EQ(range, expected);
  }

  RandomTree m_random;
  CBlock m_block{L"B"};
  std::vector<Pair> m_model;
  long m_last = 0;
};

} // namespace

TEST(BlockSequences, LeaveTheBlockAsAPlainListWouldBe) {
  for (unsigned seed = 0; seed < 10000; ++seed) {
    Sequence sequence(seed);
    for (int step = 0; step < 24; ++step)
      sequence.Step();
    sequence.Check();
    ASSERT_FALSE(testing::Test::HasFatalFailure()) << seed;
  }
}
