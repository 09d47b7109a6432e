#pragma once

#include "solutionmanager/locations/CMirroredDataMap.h"

/// The mirrored store of one value for each variation and version; there are no files.  The library has it for long.
template <class T> class CMirroredData : public CMirroredDataMap {
public:
  CMirroredData(IMirroredDataMapOwner * owner, AString const & blockName, AString const & functionKeyword,
                AString const & dataKeyword);
  CMirroredData(CMirroredData const & other);
  CMirroredData & operator=(CMirroredData const & other);
  ~CMirroredData() override;

  bool WriteData(io::CBlock & block) const override;
  /// Values have no file names, so mirrored numbers need not survive a save.
  bool NeedWriteVmap() const override { return false; }
  bool ReadData(io::CBlock const & block) override;
  bool HaveData(long version) const override;
  bool HaveData(VariationIDIndex const & key) const override;
  bool HaveData() const override;
  void ListVariations(std::map<AString, int> & variations) const override;
  void ListValidKeys(std::vector<VariationIDIndex> & keys) const override;
  void CommitMirroredData() override;
  /// True when something was dropped.
  bool DiscardMirroredData(VariationIDIndex const & key) override;
  bool DiscardMirroredData(AString const & variation) override;
  bool DiscardMirroredData() override;
  void ReinitMirroredData() override;
  void ClearAllData() override;
  void ClearVariationData(AString const & variation) override;
  void ClearNonCurrentData() override;
  void ClearMapContents() override;

  void SetData(VariationIDIndex const & key, T value);
  /// -1 when there is none.
  T GetData(VariationIDIndex const & key) const;

private:
  using View = std::map<VariationIDIndex, T>;

  void WriteEntry(io::CBlock & block, typename View::value_type const & entry) const;

  View m_committedData;
  View m_mirroredData;
};

extern template class CMirroredData<long>;
