#pragma once

#include "desktop/Error.h"
#include "desktop/KitDesktop.h"
#include "desktop/design/Design.h"
#include "desktop/project/Project.h"
#include "desktop/project/Session.h"
#include "tests/desktop/support/FakeProduct.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <functional>
#include <gtest/gtest.h>
#include <optional>

namespace support {

/// A folder with a source from which the project "study" is made, and verbs for what a user does with it.
class SessionTest : public testing::Test {
protected:
  using Access = desktop::Session::Access;

  SessionTest();

  AString PathOf(std::string const & name) const;
  AString ProjectPath() const { return PathOf("study"); }
  std::string Read(std::string const & name) const;
  void Write(std::string const & name, std::string const & content) const;
  bool Exists(std::string const & name) const;
  /// All names below the folder.
  std::vector<std::string> Names() const;

  /// Two variables, C = 1 and L = 2, and the setups "Sweep" and "Fine".
  std::unique_ptr<desktop::Session> Create() const;
  std::unique_ptr<desktop::Session> Open(Access access = Access::kWrite) const;

  static BaseSolution & SolutionOf(desktop::Session & session, AString const & setup = L"Sweep");
  /// Stores solved data as the solve queue does: as a block under the key of the solution's current version.
  static CStreamioLibrary::LibIOReturn Solve(desktop::Session & session, AString const & variation, double value);
  static CStreamioLibrary::LibIOReturn Solve(desktop::Session & session, AString const & variation,
                                             std::vector<double> const & values);
  /// The value that was stored for a variation; empty without data.
  static std::optional<double> ValueOf(desktop::Session & session, AString const & variation);
  static AString TextOf(desktop::Session & session, AString const & variable);

  /// Opens the project in another process, which works with it and dies with it open.
  void Crash(std::function<void(desktop::Session &)> const & work) const;
  /// Runs as a user without rights here; skips the test when that can't be had.
  void WithoutRights(std::function<void()> const & work) const;

  struct Refusal {
    std::optional<desktop::ErrorKind> kind; ///< empty: nothing was refused
    std::string text;
  };
  static Refusal RefusalOf(std::function<void()> const & work);

  TemporaryFolder m_folder;
  desktop::KitDesktop m_desktop;
};

} // namespace support
