#pragma once

#include "basekit/profile/CProfileUpdate.h"
#include "desktop/product/SolveJob.h"
#include "desktop/product/SourceDescription.h"
#include "products/rfcircuit/product/NetworkData.h"
#include "tests/support/Printers.h"

#include <filesystem>
#include <string>
#include <vector>

namespace rftest {

AString Wide(std::filesystem::path const & path);
std::filesystem::path ExampleFile(std::string const & relative);
std::filesystem::path WriteFile(std::filesystem::path const & path, std::string const & content);
std::string Content(std::filesystem::path const & path);

/// Fails the test when the product refuses the file.
desktop::SourceDescription Source(std::filesystem::path const & file);
std::string ErrorOfSource(std::filesystem::path const & file);

/// A job for the first sweep of a netlist.
desktop::SolveJob JobFor(std::filesystem::path const & file, AString const & variation);

class Progress : public desktop::IJobProgress {
public:
  void Report(double fraction, AString const & text) override;
  void ReportPass(io::CBlock_ptr<io::CBlock_func> const & row, int) override { passes.push_back(row); }
  void ReportConvergence(bool converged, AString const &, int) override { isConverged = converged; }
  void ReportProfile(CProfileUpdate const & update, int) override { updates.push_back(update); }
  std::vector<io::CBlock_ptr<io::CBlock_func>> passes;
  std::vector<CProfileUpdate> updates;
  bool isConverged = false;
  std::vector<double> fractions;
  std::vector<AString> texts;
};

/// Two ports, three frequencies, awkward numbers.
rfcircuit::NetworkData SmallNetwork();

/// Bit for bit.
bool SameBits(double a, double b);
void ExpectSame(rfcircuit::NetworkData const & actual, rfcircuit::NetworkData const & expected);

/// The block as it is after a way through a text or binary file.
io::CBlock ThroughText(io::CBlock const & block);
io::CBlock ThroughBinary(io::CBlock const & block);

} // namespace rftest
