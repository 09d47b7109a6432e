#include "solutionmanager/locations/CMirroredData.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/locations/MirroredViews.h"

using io::named;

namespace {

constexpr long kNoValue = -1;

} // namespace

template <class T>
CMirroredData<T>::CMirroredData(IMirroredDataMapOwner * owner, AString const & blockName,
                                AString const & functionKeyword, AString const & dataKeyword)
    : CMirroredDataMap(owner, blockName, functionKeyword, dataKeyword) {}

template <class T> CMirroredData<T>::CMirroredData(CMirroredData const & other) = default;
template <class T> CMirroredData<T> & CMirroredData<T>::operator=(CMirroredData const & other) = default;
template <class T> CMirroredData<T>::~CMirroredData() = default;

template <class T> bool CMirroredData<T>::WriteData(io::CBlock & block) const {
  if (!m_mirroredData.empty()) {
    if (SingleWrite const single = AskSingleWrite(); !single.isOnlyOne) {
      for (auto const & entry : m_mirroredData)
        WriteEntry(block, entry);
    } else if (auto const found = m_mirroredData.find(SingleKey(single)); found != m_mirroredData.end()) {
      WriteEntry(block, *found);
    }
  }
  return !block.Error(false);
}

template <class T>
void CMirroredData<T>::WriteEntry(io::CBlock & block, typename View::value_type const & entry) const {
  io::CBlockFuncPtr const line(FunctionKeyword());
  WriteAddress(*line, entry.first);
  *line << named(DataKeyword(), entry.second);
  block << line;
}

template <class T> bool CMirroredData<T>::ReadData(io::CBlock const & block) {
  // Not per line: a line without a value takes that of the line before it.
  T value = kNoValue;
  for (auto const & item : block) {
    io::CBlock_ptr<io::CBlock_func> const line(item);
    if (!line || line->Name() != FunctionKeyword())
      continue;
    AString variation;
    long version = id::invalidID;
    bool const isKnown = ReadAddress(*line, variation, version);
    *line >> named(DataKeyword(), value);
    long mirrored = id::invalidID;
    if (!isKnown || !FindMirroredVersion(version, mirrored))
      continue;
    m_committedData.try_emplace(KeyOf(variation, version), value);
    m_mirroredData.try_emplace(KeyOf(variation, mirrored), value);
  }
  // The error of this block alone counts: a value of another type in a line leaves what was there before it.
  return !block.Error(false);
}

template <class T> bool CMirroredData<T>::HaveData(long version) const {
  return mirrored::HasOriginalVersion(*this, m_mirroredData, version);
}

template <class T> bool CMirroredData<T>::HaveData(VariationIDIndex const & key) const {
  return m_mirroredData.contains(MirroredKey(key));
}

template <class T> bool CMirroredData<T>::HaveData() const { return !m_mirroredData.empty(); }

template <class T> void CMirroredData<T>::ListVariations(std::map<AString, int> & variations) const {
  mirrored::CountVariations(m_mirroredData, variations);
}

template <class T> void CMirroredData<T>::ListValidKeys(std::vector<VariationIDIndex> & keys) const {
  keys.clear();
  for (auto const & entry : m_mirroredData)
    keys.push_back(CommittedKey(entry.first));
}

template <class T> void CMirroredData<T>::CommitMirroredData() {
  ClearNonCurrentData();
  m_committedData.clear();
  for (auto const & [key, value] : m_mirroredData)
    m_committedData.try_emplace(CommittedKey(key), value);
}

template <class T> bool CMirroredData<T>::DiscardMirroredData(VariationIDIndex const & key) {
  return m_mirroredData.erase(MirroredKey(key)) > 0;
}

template <class T> bool CMirroredData<T>::DiscardMirroredData(AString const & variation) {
  return std::erase_if(m_mirroredData, [&](auto const & entry) { return mirrored::IsOf(variation)(entry.first); }) > 0;
}

template <class T> bool CMirroredData<T>::DiscardMirroredData() {
  bool const held = !m_mirroredData.empty();
  m_mirroredData.clear();
  return held;
}

template <class T> void CMirroredData<T>::ReinitMirroredData() {
  DiscardMirroredData();
  for (auto const & [key, value] : m_committedData)
    m_mirroredData.try_emplace(MirroredKey(key), value);
}

template <class T> void CMirroredData<T>::ClearAllData() { ClearMapContents(); }

template <class T> void CMirroredData<T>::ClearVariationData(AString const & variation) {
  std::erase_if(m_committedData, [&](auto const & entry) { return mirrored::IsOf(variation)(entry.first); });
  DiscardMirroredData(variation);
}

template <class T> void CMirroredData<T>::ClearNonCurrentData() {
  long const current = CurrentVersion();
  long const mirrored = GetMirroredVersion(current);
  std::erase_if(m_committedData, [=](auto const & entry) { return entry.first.GetVersionID() != current; });
  // The plain number stays too: it may be the mirrored one of an older version.
  std::erase_if(m_mirroredData, [=](auto const & entry) {
    return entry.first.GetVersionID() != current && entry.first.GetVersionID() != mirrored;
  });
}

template <class T> void CMirroredData<T>::ClearMapContents() {
  m_committedData.clear();
  m_mirroredData.clear();
}

template <class T> void CMirroredData<T>::SetData(VariationIDIndex const & key, T value) {
  if (VariationIDIndex const mirroredKey = MirroredKey(key); !IsNowhere(mirroredKey))
    m_mirroredData.insert_or_assign(mirroredKey, value);
}

template <class T> T CMirroredData<T>::GetData(VariationIDIndex const & key) const {
  auto const found = m_mirroredData.find(MirroredKey(key));
  return found == m_mirroredData.end() ? static_cast<T>(kNoValue) : found->second;
}

template class CMirroredData<long>;
