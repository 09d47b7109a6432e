#include "bench/touchstone/Reference.h"

#include "bench/support/Measure.h"
#include "bench/support/OwnProcess.h"

#include <sstream>

namespace bench {

namespace {

// It writes to standard output what it misses for drawing, so that is kept apart.
constexpr char kImport[] = "import contextlib, io, sys, time\n"
                           "try:\n"
                           "    with contextlib.redirect_stdout(io.StringIO()): import skrf\n"
                           "except ImportError: sys.exit(1)\n";
constexpr char kRead[] = "begin = time.process_time()\n"
                         "network = skrf.Network(sys.argv[1])\n"
                         "print(time.process_time() - begin, len(network.f), float(network.f[-1]),\n"
                         "      float(network.s[-1, -1, -1].real))\n";

} // namespace

Reference::Reference() {
  for (char const * const python : {"python3", "/usr/bin/python3"})
    if (m_python.empty() && RunTool({python, "-c", kImport}).exitCode == 0)
      m_python = python;
}

Reference::Reading Reference::Read(std::string const & path) const {
  auto const ended = RunTool({m_python, "-c", std::string(kImport) + kRead, path});
  Require(ended.exitCode == 0 && ended.signal == 0, "scikit-rf does not read " + path);
  std::istringstream numbers(ended.output);
  Reading reading;
  numbers >> reading.seconds >> reading.points >> reading.lastFrequency >> reading.lastValue;
  Require(!numbers.fail(), "scikit-rf told something else than numbers of " + path);
  return reading;
}

} // namespace bench
