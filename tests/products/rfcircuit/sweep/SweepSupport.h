#pragma once

#include "products/rfcircuit/engine/sweep/AdaptiveSweep.h"
#include "tests/products/rfcircuit/RfSupport.h"

namespace rftest {

/** 5th order, 0.1 dB, 1 GHz, lossless. */
std::string BandPass(double relativeBandwidth);
/** A crystal between two nodes: series R-L-C with 5 pF across. */
std::string Crystal(std::string const & name, double resonance, double q, std::string const & between);
/** Lines with the ports `in` and `out` of 50 ohm. */
std::string WithPorts(std::string const & lines);

/** An adaptive sweep with all that it told, and its largest error against the direct solve of each point. */
struct SweepRun {
  rf::SweepResult result;
  std::vector<rf::SweepPass> passes;
  double error = 0;
};
SweepRun RunSweep(std::string const & lines, std::vector<double> const & frequencies,
                  rf::SweepMethod const & method = rf::SweepMethod::Adaptive());
/** The same for one function of frequency, as a network of one port. */
SweepRun RunSweepOf(std::function<Complex(double)> const & function, std::vector<double> const & frequencies,
                    rf::SweepMethod const & method = rf::SweepMethod::Adaptive());

bool IsFinite(rf::SweepResult const & result);

} // namespace rftest
