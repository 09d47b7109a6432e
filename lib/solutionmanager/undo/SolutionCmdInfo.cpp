#include "solutionmanager/undo/SolutionCmdInfo.h"

#include "basekit/diag/Assert.h"

#include <cstddef>

SolutionCmdInfo::~SolutionCmdInfo() = default;

void SolutionCmdInfo::SetCommandInfoForSolutions(KelvroCommandInfo * info) {
  KVRO_ASSERT(mInfoForSolutions == NULL);
  if (m_shared && m_shared.use_count() == 1)
    (void)m_shared->release();
  mInfoForSolutions = info;
  m_shared = std::make_shared<std::unique_ptr<KelvroCommandInfo>>(info);
}
