#include "apps/solvedesk/report/PageTree.h"

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/project/ProjectTree.h"
#include "apps/solvedesk/project/StaleReport.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/Variable.h"
#include "desktop/command/DesignState.h"
#include "desktop/command/StaleReason.h"
#include "desktop/design/Design.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Project.h"
#include "desktop/project/Session.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

#include <fmt/format.h>

#include <algorithm>

namespace solvedesk {
namespace {

using desktop::page::Tree;

/// A browser shows more, but nobody reads them one by one.
constexpr std::size_t kMostVariations = 2000;

Tree::Node Plain(AString const & label, std::string const & detail) {
  return {label, text::FromUtf8(detail), Tree::State::kNone, {}, {}, {}};
}

class TreeMaker {
public:
  explicit TreeMaker(desktop::Session & session) : m_session(session), m_states(session) {}

  Tree Make() {
    desktop::Design const & design = m_session.GetDesign();
    Tree::Node root = Plain(design.GetName(), Utf8(m_session.GetProduct().GetName()) +
                                                  (m_session.HasUnsavedChanges() ? ", unsaved changes" : ""));
    root.children.push_back(Variables(design));
    for (auto const & [id, setup] : m_session.GetManager().GetSetups())
      root.children.push_back(Setup(*setup));
    return {m_session.GetProject().GetName(), {std::move(root)}};
  }

private:
  static Tree::Node Variables(desktop::Design const & design) {
    Tree::Node node = Plain(L"variables", "");
    for (Variable const * const variable : design.GetVariables())
      node.children.push_back(Plain(variable->GetName(), "= " + Utf8(variable->GetValueText())));
    node.detail = node.children.empty() ? AString(L"none") : AString();
    return node;
  }

  Tree::Node Setup(BaseSimulationSetup const & setup) {
    std::string const settings = Utf8(desktop::SettingsWords(m_session, setup));
    Tree::Node node = Plain(AString(L"setup ") + setup.GetName(),
                            Utf8(setup.GetSimSetupTypeName()) + (settings.empty() ? "" : ", " + settings));
    for (auto const & [id, solution] : setup.GetSolutions())
      node.children.push_back(Solution(*solution));
    return node;
  }

  Tree::Node Solution(BaseSolution const & solution) {
    auto variations = m_states.Of(solution);
    SolutionCounts const counts = Count(variations);
    Tree::Node node = Plain(AString(L"solution ") + solution.GetSolutionName(),
                            fmt::format("{}, {} valid, {} with data, {} saved",
                                        solvedesk::Count(static_cast<long long>(counts.all), "variation"), counts.valid,
                                        counts.withData, counts.saved));
    if (variations.size() > kMostVariations)
      std::stable_partition(variations.begin(), variations.end(),
                            [](VariationState const & state) { return !state.isValid && !state.isFormer; });
    for (std::size_t i = 0; i < std::min(variations.size(), kMostVariations); ++i)
      node.children.push_back(Variation(variations[i]));
    if (variations.size() > kMostVariations)
      node.children.push_back(
          Plain(AString::Format(L"and %lu more", static_cast<unsigned long>(variations.size() - kMostVariations)),
                "`solvedesk info` lists all"));
    if (auto const unsolved = desktop::WhyUnsolved(m_session, solution))
      node.children.push_back(Explained(m_session.GetDesign().GetVariation(), "where the variables stand; not solved",
                                        Tree::State::kStale, unsolved->reason));
    return node;
  }

  Tree::Node Variation(VariationState const & state) {
    AString const label = state.variation.empty() ? AString(L"(no variables)") : state.variation;
    std::string const detail = !state.hasData     ? "no data"
                               : !state.isUnsaved ? "saved"
                               : state.isSaved    ? "saved, with newer unsaved results beside it"
                                                  : "unsaved";
    if (!state.isValid && !state.isFormer)
      return Explained(label, detail, Tree::State::kStale, desktop::WhyStale(m_session, *state.object));
    Tree::Node node = Plain(label, detail);
    node.state = state.isFormer ? Tree::State::kFormer : state.hasData ? Tree::State::kValid : Tree::State::kNone;
    return node;
  }

  static Tree::Node Explained(AString const & label, std::string const & detail, Tree::State state,
                              desktop::StaleReason const & reason) {
    return {label,
            text::FromUtf8(detail),
            state,
            AString(L"since ") + text::FromUtf8(ReasonLine(reason)),
            AString(L"valid again by: ") + text::FromUtf8(RemedyLine(reason)),
            {}};
  }

  desktop::Session & m_session;
  VariationStates m_states;
};

} // namespace

Tree TreeOf(desktop::Session & session) { return TreeMaker(session).Make(); }

} // namespace solvedesk
