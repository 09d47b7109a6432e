#include "basekit/profile/CProfileData.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/profile/CProfileGroup.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <unordered_set>

namespace {

wchar_t const * const kIndex = L"Index";
wchar_t const * const kID = L"ID";

} // namespace

CProfileData::~CProfileData() { Clear(); }

void CProfileData::Clear() {
  for (auto const & [index, list] : m_groups)
    for (auto const & [groupID, group] : list)
      delete group;
  m_groups.clear();
}

long CProfileData::AddGroup(CProfileGroup * group, int index) {
  m_groups[index].emplace_back(m_nextID, group);
  return m_nextID++;
}

CProfileData::GroupList const * CProfileData::GetGroupList(int index) const {
  auto const found = m_groups.find(index);
  return found != m_groups.end() ? &found->second : nullptr;
}

CProfileGroup * CProfileData::GetProfileGroupForEdit(int index, long groupID) {
  GroupList const * const list = GetGroupList(index);
  if (!list)
    return nullptr;
  // The group that is asked for is nearly always the last one.
  auto const found =
      std::find_if(list->rbegin(), list->rend(), [=](auto const & item) { return item.first == groupID; });
  return found != list->rend() ? found->second : nullptr;
}

io::ReadError CProfileData::DoDataExchange(io::CBlock & block, bool reading) {
  return reading ? ReadGroups(block) : WriteGroups(block);
}

io::ReadError CProfileData::ReadGroups(io::CBlock const & block) {
  Clear();
  m_nextID = 1;
  io::CReadError result;
  std::unordered_set<long> taken;
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock> const groupBlock(child);
    if (groupBlock && AString::MatchNoCase(groupBlock->Name(), CProfileGroup::GetKeyword()))
      result += ReadGroup(*groupBlock, taken);
  }
  return result;
}

io::ReadError CProfileData::ReadGroup(io::CBlock const & block, std::unordered_set<long> & taken) {
  int index = 0;
  long groupID = 0;
  block >> io::named(kIndex, index);
  bool const hasIndex = block.Found();
  block >> io::named(kID, groupID);
  bool const isID = block.Found() && groupID > 0 && groupID < std::numeric_limits<long>::max();
  if (!hasIndex || !isID || !taken.insert(groupID).second)
    return io::kBadContent;
  auto group = std::make_unique<CProfileGroup>();
  io::ReadError const result = group->Read(block);
  m_groups[index].emplace_back(groupID, group.release());
  m_nextID = std::max(m_nextID, groupID + 1);
  return result;
}

io::ReadError CProfileData::WriteGroups(io::CBlock & block) const {
  for (auto const & [index, list] : m_groups)
    for (auto const & [groupID, group] : list) {
      io::CBlock_ptr<io::CBlock> const groupBlock(new io::CBlock(CProfileGroup::GetKeyword()));
      *groupBlock << io::named(kIndex, index) << io::named(kID, groupID);
      group->Write(*groupBlock);
      block << groupBlock;
    }
  return io::kNoError;
}
