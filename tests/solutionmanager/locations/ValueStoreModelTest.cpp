// Random sequences of all that can be done to a store of values, against the plainest model of its two views.

#include "basekit/io/CBlock.h"
#include "solutionmanager/locations/CMirroredData.h"
#include "tests/solutionmanager/support/RandomSequences.h"
#include "tests/solutionmanager/support/StoreOwner.h"

#include <gtest/gtest.h>

namespace {

/// Views by variation and original version: mirrored numbers are nobody's business here.
struct Model {
  using View = std::map<std::pair<long, long>, long>;
  View committed;
  View working;

  void Keep(View & view, auto isKept) {
    std::erase_if(view, [&](auto const & entry) { return !isKept(entry.first); });
  }
  void ClearNonCurrent(long current) {
    for (View * const view : {&committed, &working})
      Keep(*view, [&](auto const & key) { return key.second == current; });
  }
  void Commit(long current) {
    ClearNonCurrent(current);
    committed = working;
  }
};

class Play : public support::RandomSequence {
public:
  using RandomSequence::RandomSequence;

  void Step() {
    switch (Pick(12)) {
    case 0:
    case 1:
    case 2:
    case 3: {
      auto const key = AnyKey();
      long const value = Pick(1000);
      m_store->SetData(KeyOf(key), value);
      m_model.working[key] = value;
      break;
    }
    case 4:
      m_store->CommitMirroredData();
      m_model.Commit(owner.current);
      break;
    case 5: {
      auto const key = AnyKey();
      ASSERT_EQ(m_store->DiscardMirroredData(KeyOf(key)), m_model.working.erase(key) > 0);
      break;
    }
    case 6: {
      long const variation = AnyVariation();
      std::size_t const before = m_model.working.size();
      m_model.Keep(m_model.working, [&](auto const & key) { return key.first != variation; });
      ASSERT_EQ(m_store->DiscardMirroredData(TextOf(variation)), m_model.working.size() < before);
      break;
    }
    case 7:
      ASSERT_EQ(m_store->DiscardMirroredData(), !m_model.working.empty());
      m_model.working.clear();
      break;
    case 8:
      m_store->ReinitMirroredData();
      m_model.working = m_model.committed;
      break;
    case 9:
      StepClear();
      break;
    case 10:
      owner.current = 5 + Pick(2);
      break;
    default:
      WriteAndRead();
    }
  }

  void Check() const {
    Model::View found;
    std::vector<VariationIDIndex> keys;
    m_store->ListValidKeys(keys);
    for (auto const & key : keys)
      found[{key.GetVariationID(), key.GetVersionID()}] = m_store->GetData(key);
    ASSERT_EQ(found, m_model.working);
    ASSERT_EQ(m_store->HaveData(), !m_model.working.empty());
  }

private:
  void StepClear() {
    long const variation = AnyVariation();
    switch (Pick(4)) {
    case 0:
      m_store->ClearAllData();
      m_model = {};
      break;
    case 1:
      m_store->ClearMapContents();
      m_model = {};
      break;
    case 2:
      m_store->ClearNonCurrentData();
      m_model.ClearNonCurrent(owner.current);
      break;
    default:
      m_store->ClearVariationData(TextOf(variation));
      for (auto * const view : {&m_model.committed, &m_model.working})
        m_model.Keep(*view, [&](auto const & key) { return key.first != variation; });
    }
  }

  /// Only the working view is written, and fills both.
  void WriteAndRead() {
    io::CBlock parent(L"Design");
    ASSERT_TRUE(m_store->Write(parent));
    m_store = std::make_unique<CMirroredData<long>>(&owner, L"Store", L"Entry", L"Datum");
    ASSERT_TRUE(m_store->Read(parent, false));
    m_model.committed = m_model.working;
  }

  std::unique_ptr<CMirroredData<long>> m_store =
      std::make_unique<CMirroredData<long>>(&owner, L"Store", L"Entry", L"Datum");
  Model m_model;
};

} // namespace

TEST(ValueStoreModel, AllSequencesDoWhatThePlainModelDoes) { support::PlaySequences<Play>(200); }
