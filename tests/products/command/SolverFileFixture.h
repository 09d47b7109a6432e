#pragma once

#include "products/command/source/SolverFile.h"
#include "products/command/source/SourceError.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace commandtest {

/// A folder with a solver file, "a.solver".
class SolverFileTest : public testing::Test {
protected:
  std::string PathOf(std::string const & name) const { return (m_folder.Path() / name).string(); }
  void Write(std::string const & name, std::string const & content) const {
    std::ofstream(PathOf(name), std::ios::binary) << content;
  }
  command::SolverFile Read(std::string const & content) const {
    Write("a.solver", content);
    return command::ReadSolverFile(PathOf("a.solver"));
  }
  void ExpectRefused(std::string const & content, std::vector<std::string> const & parts) const {
    try {
      Read(content);
      ADD_FAILURE() << "not refused: " << content;
    } catch (command::SourceError const & error) {
      for (std::string const & part : parts)
        EXPECT_NE(std::string(error.what()).find(part), std::string::npos) << error.what();
    }
  }

  support::TemporaryFolder m_folder;
};

/// The least that a solver file needs behind what a test is about.
inline char const * const kRest = "command true\noutput csv stdout\nscalar y = y\n";

} // namespace commandtest
