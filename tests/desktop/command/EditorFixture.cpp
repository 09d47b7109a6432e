#include "tests/desktop/command/EditorFixture.h"

#include "basekit/value/Variable.h"

namespace support {

void EditorTest::Reopen() {
  m_session.reset();
  m_session = Open();
}

FakeSetup & EditorTest::SetupOf(desktop::Session & session, AString const & name) {
  return dynamic_cast<FakeSetup &>(*session.GetManager().GetISimulationSetup(name, false, false));
}

BaseSolutionVariation & EditorTest::VariationOf(AString const & variation, long version) {
  return *SolutionOf(*m_session).GetBaseSolutionVariation(variation, version);
}

bool EditorTest::IsValid(AString const & variation, AString const & setup) {
  return SolutionOf(*m_session, setup).HasValidSolutionData(variation, -1);
}

AString EditorTest::StateOf(desktop::Session & session) {
  AString state = session.GetDesign().GetVariation();
  for (auto const & [id, setup] : session.GetManager().GetSetups()) {
    state += AString::Format(L"\n%d '%s' '%s' V%d", id, setup->GetName(), dynamic_cast<FakeSetup &>(*setup).words,
                             setup->GetVersionID());
    for (auto const & [solutionID, solution] : setup->GetSolutions()) {
      state += AString::Format(L"\n  %d '%s' V%d", solutionID, solution->GetSolutionName(), solution->GetVersionID());
      std::map<AString, AString> lines; // In the order of the texts: the IDs of variations may differ.
      for (auto const & [index, variation] : solution->GetVariations()) {
        AString const text = variation->GetDesignVariationKey();
        auto const * const loaded = dynamic_cast<FakeVariation *>(solution->GetVariationData(
            VariationIDIndex(text, variation->GetVersionID(), &session.GetManager()), false));
        lines[text + AString::Format(L" V%d", variation->GetVersionID())] =
            AString::Format(L" %s %g", AString(variation->IsVariationValid() ? L"valid" : L"stale"),
                            loaded && loaded->HasSolutionData() ? loaded->values.front() : -1.0);
      }
      for (auto const & [key, line] : lines)
        state += AString(L"\n    ") + key + line;
    }
  }
  return state;
}

} // namespace support
