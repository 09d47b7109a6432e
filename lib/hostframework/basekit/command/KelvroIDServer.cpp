#include "basekit/command/KelvroIDServer.h"

#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"

#include <algorithm>
#include <limits>

namespace {

AString const kNextUniqueID = L"NextUniqueID";
// A file cannot move the counter so far that IDs run out.
constexpr long largestFromFile = std::numeric_limits<long>::max() / 2;

} // namespace

IIDServer::~IIDServer() = default;

KelvroIDServer::KelvroIDServer(long initial, bool keepFirst, IIDServer * parent)
    : m_next(initial), m_keepFirst(keepFirst), m_parent(parent) {}

KelvroIDServer::~KelvroIDServer() = default;

long KelvroIDServer::FetchNextUniqueID() {
  if (m_parent) {
    long const fetched = m_parent->FetchNextUniqueID();
    if (fetched != id::invalidID)
      m_next = std::max(m_next, fetched + 1);
    return fetched;
  }
  if (m_next == std::numeric_limits<long>::max()) {
    KVRO_ASSERT(!"No unique IDs left");
    return id::invalidID;
  }
  return m_next++;
}

bool KelvroIDServer::WriteNextUniqueID(io::CBlock & block) const {
  block << io::named(kNextUniqueID, m_next);
  return true;
}

void KelvroIDServer::ResetNextUniqueID(io::CBlock const & block) {
  long next = m_next;
  block >> io::named(kNextUniqueID, next);
  if (!block.Found() || m_keepFirst)
    return;
  if (next > largestFromFile) {
    KVRO_ASSERT(!"Next unique ID out of range");
    return;
  }
  m_next = std::max(m_next, next);
}

void KelvroIDServer::ReserveUniqueID(long taken) {
  // The counter never comes to IDs beyond that.
  if (!m_keepFirst && taken < largestFromFile)
    m_next = std::max(m_next, taken + 1);
}
