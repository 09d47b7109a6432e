// The desktop's own records of changes keep the promise of all of them: undo gives the state before, redo the state
// after, as often as one likes, and one that dies on either side of its change leaves the state.
#include "desktop/command/Deltas.h"
#include "basekit/command/KelvroCommand.h"
#include "desktop/command/VariationDeletion.h"
#include "tests/desktop/command/EditorFixture.h"

namespace {

constexpr wchar_t kPoint[] = L"C=1; L=2";

/// What a case may change, and where it tells a failure.
struct World {
  desktop::Session & session;
  AString & sweep; ///< settings of the two setups
  AString & fine;
  BaseSolution & solution;
  desktop::DeltaFailure & failure;
};

struct ExchangedSettings {
  static KelvroDeltaState * Change(World const & world) {
    return new desktop::ExchangeDelta(
        [&sweep = world.sweep, kept = AString(L"exchanged")]() mutable { std::swap(sweep, kept); });
  }
};

/// One text follows another, whose change stands between the work for undo and the work for redo.
class FollowedExchange : public KelvroDeltaState {
public:
  FollowedExchange(AString & leader, AString & follower) : KelvroDeltaState(true) {
    using Way = desktop::OneWayDelta::Way;
    auto const follow = [&leader, &follower] { follower = AString(L"as ") + leader; };
    m_command.AddDeltaState(new desktop::OneWayDelta(Way::kUndo, follow));
    m_command.AddDeltaState(
        new desktop::ExchangeDelta([&leader, kept = AString(L"exchanged")]() mutable { std::swap(leader, kept); }));
    m_command.AddDeltaState(new desktop::OneWayDelta(Way::kRedo, follow));
    follow();
  }
  void UndoIt() override {
    KelvroDeltaState::UndoIt();
    m_command.Undo();
  }
  void RedoIt() override {
    KelvroDeltaState::RedoIt();
    m_command.Redo();
  }

private:
  KelvroCommand m_command{L"Edit"};
};

struct WorkThatComesLastBothWays {
  static KelvroDeltaState * Change(World const & world) { return new FollowedExchange(world.fine, world.sweep); }
};

struct DeletedVariation {
  static KelvroDeltaState * Change(World const & world) {
    return new desktop::VariationDeletion(world.solution, kPoint, world.failure);
  }
};

struct DeletedVariationThatWasSaved {
  static KelvroDeltaState * Change(World const & world) {
    world.session.Save();
    return DeletedVariation::Change(world);
  }
};

} // namespace

/// A point that is valid and has a stale version, another one that stays, and a setup that says what the other does.
template <class Case> class DesktopDelta : public support::EditorTest {
protected:
  DesktopDelta() {
    Solve(*m_session, kPoint, 5);
    Editor().EditSetup(L"Fine", L"led");
    Editor().EditSetup(L"Sweep", L"as led");
    Solve(*m_session, kPoint, 6);
    Solve(*m_session, L"C=9; L=2", 7);
    m_before = StateOf(*m_session);
    m_delta.reset(Case::Change({*m_session, SetupOf(*m_session, L"Sweep").words, SetupOf(*m_session, L"Fine").words,
                                SolutionOf(*m_session), m_failure}));
    m_after = StateOf(*m_session);
  }

  desktop::DeltaFailure m_failure;
  std::unique_ptr<KelvroDeltaState> m_delta;
  AString m_before;
  AString m_after;
};

using DesktopCases =
    testing::Types<ExchangedSettings, WorkThatComesLastBothWays, DeletedVariation, DeletedVariationThatWasSaved>;
TYPED_TEST_SUITE(DesktopDelta, DesktopCases);

TYPED_TEST(DesktopDelta, UndoGivesTheStateBeforeAndRedoTheStateAfterAsOftenAsOneLikes) {
  EXPECT_NE(this->m_before, this->m_after);
  for (int round = 0; round < 3; ++round) {
    this->m_delta->UndoIt();
    EXPECT_EQ(this->StateOf(*this->m_session), this->m_before);
    EXPECT_FALSE(this->m_delta->IsStateChangeDone());
    this->m_delta->RedoIt();
    EXPECT_EQ(this->StateOf(*this->m_session), this->m_after);
    EXPECT_TRUE(this->m_delta->IsStateChangeDone());
  }
  EXPECT_TRUE(this->m_failure.Take().empty());
}

TYPED_TEST(DesktopDelta, ADeltaThatDiesWhileItsChangeStandsLeavesTheState) {
  this->m_delta->UndoIt();
  this->m_delta->RedoIt();
  this->m_delta.reset();
  EXPECT_EQ(this->StateOf(*this->m_session), this->m_after);
}

TYPED_TEST(DesktopDelta, ADeltaThatDiesUndoneLeavesTheStateBeforeAlsoForTheNextSession) {
  this->m_delta->UndoIt();
  this->m_delta.reset();
  EXPECT_EQ(this->StateOf(*this->m_session), this->m_before);
  this->m_session->Save();
  this->Reopen();
  EXPECT_EQ(this->StateOf(*this->m_session), this->m_before);
}

TEST(OneWayDelta, WorksOnItsOwnWayAloneAndNotWhenItIsMade) {
  using Way = desktop::OneWayDelta::Way;
  for (Way const way : {Way::kUndo, Way::kRedo}) {
    int works = 0;
    desktop::OneWayDelta delta(way, [&works] { ++works; });
    EXPECT_EQ(works, 0);
    delta.UndoIt();
    EXPECT_EQ(works, way == Way::kUndo ? 1 : 0);
    delta.RedoIt();
    EXPECT_EQ(works, 1);
  }
}
