#pragma once

class BaseSolutionManager;
namespace io {
class CBlock;
}

namespace desktop {

/// What ports are shown with, as part of a project: item Shown, and in block "Settings" a block for each port.
void WritePorts(BaseSolutionManager const & manager, io::CBlock & block);
/// The project's word counts, whatever the library says; an empty block leaves all ports as they were solved.
void ReadPorts(io::CBlock const & block, BaseSolutionManager & manager);

} // namespace desktop
