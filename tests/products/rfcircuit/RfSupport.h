#pragma once

#include "products/rfcircuit/engine/netlist/Elaborate.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/engine/network/SParameterSolver.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <complex>
#include <filesystem>
#include <functional>
#include <string>

namespace rftest {

using Complex = std::complex<double>;

/** Reads lines of a netlist; a title line is put before them, so the first one is line 2 of `test.cir`. */
rf::Netlist Read(std::string const & lines);
rf::Circuit Build(std::string const & lines, rf::Overrides const & overrides = {});
rf::SMatrix Solve(std::string const & lines, double frequency);
/** Two ports of 50 ohm, `in` and `out`, are added. */
rf::SMatrix SolveTwoPort(std::string const & lines, double frequency);

/** The text of the NetlistError that the action throws; fails the test when it throws none. */
std::string ErrorOf(std::function<void()> const & action);
std::string ErrorOfReading(std::string const & lines);
std::string ErrorOfBuilding(std::string const & lines);

void ExpectNear(Complex actual, Complex expected, double tolerance = 1e-10);

/** A number as text, to put netlists together.  Constant, since GCC 12 raises false alarms (stringop-overflow) where a
    literal is put before a temporary string. */
std::string const Text(int number);
std::string const Text(double number);

std::filesystem::path ExampleFile(std::string const & relative);

/** A temporary folder with files. */
class FolderOfFiles : public support::TemporaryFolder {
public:
  std::filesystem::path Write(std::string const & name, std::string const & content) const;
  std::size_t FileCount() const;
};

/** The superuser may do anything: for the time of a test it is somebody else. */
class WithoutPrivileges {
public:
  WithoutPrivileges();
  ~WithoutPrivileges();
  WithoutPrivileges(WithoutPrivileges const &) = delete;
  WithoutPrivileges & operator=(WithoutPrivileges const &) = delete;

private:
  bool m_WasSuperuser;
};

std::string Content(std::filesystem::path const & path);

} // namespace rftest
