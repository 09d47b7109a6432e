#pragma once

namespace desktop {
struct SolveJob;
}
namespace io {
class CBlock;
}
namespace rf {
class Circuit;
}

namespace rfcircuit {

class NetworkData;
struct SweepPlan;

/// Appends to a job's result what the plan wants stored beside the S-parameters: files, and numbers about them.  Throws
/// rf::NetlistError when a file can't be made of this network.
void DeliverFiles(SweepPlan const & plan, rf::Circuit const & circuit, NetworkData const & data,
                  desktop::SolveJob const & job, io::CBlock & result);

} // namespace rfcircuit
