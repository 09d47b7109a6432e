// The profile records of a setup: what each solve cost, group by group, in memory or in its block of the library.

#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/profile/CProfileData.h"
#include "basekit/profile/CProfileGroup.h"
#include "basekit/profile/CProfileUpdate.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/RecordMap.h"

AString BaseSimulationSetup::ProfileBlockName(VariationIDIndex const & index) const {
  return SolutionVariationKey(GetID(), index.GetVariation(), SolutionVariationKey::kProfileDataKey,
                              index.GetVersionID())
      .Pack();
}

CProfileData const * BaseSimulationSetup::GetProfileData(AString const & variation, long version) const {
  VariationIDIndex const at = RecordIndex(variation, version);
  if (CProfileData const * const record = FindRecord(m_ProfileData, at))
    return record;
  // To the caller a record is there all along, whether it is in memory or not.
  auto & self = const_cast<BaseSimulationSetup &>(*this);
  if (self.ReadProfileDataBlock(variation, at.GetVersionID()) != io::kNoError)
    return nullptr;
  return FindRecord(m_ProfileData, at);
}

CProfileData * BaseSimulationSetup::GetProfileDataForEdit(AString const & variation, long version) {
  return const_cast<CProfileData *>(GetProfileData(variation, version));
}

io::ReadError BaseSimulationSetup::ReadProfileDataBlock(AString const & variation, long version) {
  VariationIDIndex const at = RecordIndex(variation, version);
  io::CBlock block(ProfileBlockName(at));
  if (m_SolutionMgr->LoadSingleBlock(block) != CStreamioLibrary::kLibSuccess)
    return io::kNotFound;
  return FindOrMakeRecord(m_ProfileData, at).DoDataExchange(block, true);
}

bool BaseSimulationSetup::WriteProfileDataBlock(AString const & variation, long version) const {
  CProfileData const * const record = GetProfileData(variation, version);
  if (!record)
    return true;
  io::CBlock block(ProfileBlockName(RecordIndex(variation, version)));
  return record->Write(block) && m_SolutionMgr->SaveSingleBlock(block) == CStreamioLibrary::kLibSuccess;
}

long BaseSimulationSetup::AddProfileGroup(AString const & variation, long version, int index) {
  VariationIDIndex const at = RecordIndex(variation, version);
  // What the library holds comes first, so that a write does not replace it.
  GetProfileData(variation, at.GetVersionID());
  return FindOrMakeRecord(m_ProfileData, at).AddGroup(new CProfileGroup, index);
}

long BaseSimulationSetup::StartProfileGroup(AString const & variation, long version, CProfileUpdate const & update,
                                            int index) {
  long const gid = AddProfileGroup(variation, version, index);
  CProfileData const * const record = GetProfileData(variation, version);
  if (record && record->HasGroupList(index))
    record->GetGroupList(index)->back().second->SetStartInfo(update.GetTask().GetInfo());
  return gid;
}

void BaseSimulationSetup::StopProfileGroup(long gid, AString const & variation, long version,
                                           CProfileUpdate const & update, int index) {
  CProfileData * const record = GetProfileDataForEdit(variation, version);
  if (!record || !record->HasGroupList(index))
    return;
  CProfileGroup * const group = record->GetProfileGroupForEdit(index, gid);
  KVRO_ASSERT(group);
  if (group)
    group->SetTotalInfo(update.GetInfo());
}

void BaseSimulationSetup::AddProfileTaskToGroup(long gid, AString const & variation, long version,
                                                CProfileUpdate const & update, int index) {
  CProfileData * const record = GetProfileDataForEdit(variation, version);
  CProfileGroup * const group =
      record && record->HasGroupList(index) ? record->GetProfileGroupForEdit(index, gid) : nullptr;
  KVRO_ASSERT(group);
  if (group)
    group->AddTask(new CProfileTask(update.GetTask()));
}

void BaseSimulationSetup::AddProfileTask(AString const & variation, long version, CProfileUpdate const & update,
                                         int index) {
  long const gid = GetLastGroupID(variation, version, index);
  KVRO_ASSERT(gid != id::invalidID);
  AddProfileTaskToGroup(gid, variation, version, update, index);
}

long BaseSimulationSetup::GetLastGroupID(AString const & variation, long version, int index) const {
  CProfileData const * const record = GetProfileData(variation, version);
  CProfileData::GroupList const * const groups = record ? record->GetGroupList(index) : nullptr;
  if (!groups || groups->empty())
    return id::invalidID;
  long const lastGrpID = groups->back().first;
  KVRO_ASSERT(lastGrpID != id::invalidID);
  return lastGrpID;
}

void BaseSimulationSetup::ProfileUpdate(AString const & variation, long version, CProfileUpdate const & update,
                                        int index, long * groupID) {
  switch (update.GetKind()) {
  case CProfileUpdate::kStartGroup: {
    long const started = StartProfileGroup(variation, version, update, index);
    if (groupID)
      *groupID = started;
    return;
  }
  case CProfileUpdate::kStopGroup: {
    long const gid = groupID ? *groupID : GetLastGroupID(variation, version, index);
    KVRO_ASSERT(gid != id::invalidID);
    return StopProfileGroup(gid, variation, version, update, index);
  }
  default:
    if (!groupID)
      return AddProfileTask(variation, version, update, index);
    KVRO_ASSERT(*groupID != id::invalidID);
    AddProfileTaskToGroup(*groupID, variation, version, update, index);
  }
}
