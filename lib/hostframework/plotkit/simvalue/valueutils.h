#pragma once

class ISolutionMgr;
class IVariableServer;

namespace valueutils {

/// The variables of the project that the manager's design belongs to; null when there are none.
IVariableServer * GetProjectVariableServer(ISolutionMgr const * manager);

} // namespace valueutils
