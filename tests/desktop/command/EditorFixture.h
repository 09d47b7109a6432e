#pragma once

#include "desktop/command/Editor.h"
#include "desktop/command/StaleReason.h"
#include "tests/desktop/support/SessionFixture.h"

namespace support {

/// An open project with two setups, "Sweep" and "Fine", for tests of edits.
class EditorTest : public SessionTest {
protected:
  EditorTest() : m_session(Create()) {}

  desktop::Editor & Editor() { return m_session->GetEditor(); }
  void Reopen();
  bool IsValid(AString const & variation, AString const & setup = L"Sweep");
  static FakeSetup & SetupOf(desktop::Session & session, AString const & name);
  AString WordsOf(AString const & setup) { return SetupOf(*m_session, setup).words; }
  BaseSolutionVariation & VariationOf(AString const & variation, long version);
  desktop::StaleReason Why(AString const & variation, long version) {
    return desktop::WhyStale(*m_session, VariationOf(variation, version));
  }
  /// All that edits change and undo brings back, in one text.
  AString StateOf(desktop::Session & session);

  std::unique_ptr<desktop::Session> m_session;
};

} // namespace support
