#pragma once

#include "basekit/command/IIDServer.h"
#include "basekit/id/Id.h"

namespace io {
class CBlock;
}

/// A rising counter of IDs that goes to and from a block as item "NextUniqueID".  IDs are used up to the largest long
/// but one; then id::invalidID is given out, with an assertion.
class KelvroIDServer : public IIDServer {
public:
  /// With parent, IDs come from that server and this one's counter stays behind the largest of them.  With
  /// keepFirst, a block never moves the counter, for servers whose IDs live only as long as the program.
  explicit KelvroIDServer(long initial = id::initialID, bool keepFirst = false, IIDServer * parent = nullptr);
  ~KelvroIDServer() override;

  long FetchNextUniqueID() override;

  bool WriteNextUniqueID(io::CBlock & block) const;
  /// Takes the counter from the block, but never back to IDs that were given out; without the item nothing changes.
  void ResetNextUniqueID(io::CBlock const & block);
  /// Never gives this ID out, nor a lower one: for IDs that a file holds, should its counter be lost or behind them.
  void ReserveUniqueID(long taken);
  long PeekNextUniqueID() const { return m_next; }

private:
  long m_next;
  bool m_keepFirst;
  IIDServer * m_parent;
};
