#pragma once

#include "basekit/io/CStreamio_block_object.h"

#include <list>
#include <map>
#include <unordered_set>
#include <utility>

class CProfileGroup;

/// The cost record of one solve: groups of tasks in order of addition, under an index that a product chooses.  Owns
/// its groups; the ID of a group is its own among all groups of the record.
class CProfileData : public io::CStreamio_block_object {
public:
  using GroupList = std::list<std::pair<long, CProfileGroup *>>;

  CProfileData() = default;
  ~CProfileData() override;
  CProfileData(CProfileData const &) = delete;
  CProfileData & operator=(CProfileData const &) = delete;

  AString GetItemName() const override { return L"ProfileData"; }
  /// Reading replaces the groups.  What is no group or task of ours is left out, and makes the result kBadContent.
  io::ReadError DoDataExchange(io::CBlock & block, bool reading) override;

  /// Takes ownership and returns the new group's ID.
  long AddGroup(CProfileGroup * group, int index);
  bool HasGroupList(int index) const { return m_groups.contains(index); }
  /// Null for an index without groups.
  GroupList const * GetGroupList(int index) const;
  /// Null when the index has no such group.
  CProfileGroup * GetProfileGroupForEdit(int index, long groupID);

private:
  void Clear();
  io::ReadError ReadGroups(io::CBlock const & block);
  io::ReadError ReadGroup(io::CBlock const & block, std::unordered_set<long> & taken);
  io::ReadError WriteGroups(io::CBlock & block) const;

  std::map<int, GroupList> m_groups;
  long m_nextID = 1;
};
