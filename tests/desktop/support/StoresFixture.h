#pragma once

#include "tests/desktop/support/SessionFixture.h"

namespace support {

/// A session whose solutions keep files, and verbs for what a product does with them.
class StoresTest : public SessionTest {
protected:
  static constexpr wchar_t kFirst[] = L"C=1; L=2";
  static constexpr wchar_t kSecond[] = L"C=3; L=2";

  static FakeStores & StoresOf(desktop::Session & session) {
    return dynamic_cast<FakeSolution &>(SolutionOf(session)).stores;
  }
  static std::string ContentOf(desktop::Session & session, AString const & variation) {
    return StoresOf(session).ContentOf(variation);
  }
  /// A point with its files, made safe as a solve does.
  static void SolveWithFiles(desktop::Session & session, AString const & variation, std::string const & content);

  /// Of the stores, by their paths in the project's folder.
  std::vector<std::string> Files() const;
  /// A managed file of that content; its name.
  static std::string Manage(desktop::Session & session, std::string const & content);
  /// The contents of the managed files that stand on the disk, sorted.
  std::vector<std::string> ManagedContents() const;
};

} // namespace support
