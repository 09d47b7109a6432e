#include "desktop/report/SelfReference.h"

#include "desktop/report/ExpressionWords.h"
#include "plotkit/outputvariable/OutputVariable.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <algorithm>
#include <set>
#include <vector>

namespace desktop {

namespace {

/// What goes down further leads nowhere that people could follow.
constexpr std::size_t kDeepest = 1000;

/// Goes down from word to word, each once.
class Search {
public:
  explicit Search(BaseSolutionManager const & manager) : m_manager(manager) {}

  /// True when the way leads back to a variable on it.
  bool Follow(AString const & expression) {
    std::vector<AString> const words = ExpressionWords(expression);
    return std::any_of(words.begin(), words.end(), [this](AString const & word) { return Enter(word); });
  }

  AString Way() const {
    AString text;
    for (auto name = std::find(m_way.begin(), m_way.end(), m_way.back()); name != m_way.end(); ++name)
      text += (text.empty() ? AString() : AString(L" -> ")) + *name;
    return text;
  }

private:
  bool Enter(AString const & word) {
    OutputVariable const * const variable = m_manager.FindOutputVariable(word);
    if (!variable)
      return false;
    AString const name = variable->GetName();
    bool const isOnWay = std::find(m_way.begin(), m_way.end(), name) != m_way.end();
    if (!isOnWay && (!m_seen.insert(name).second || m_way.size() >= kDeepest))
      return false;
    m_way.push_back(name);
    if (isOnWay || Follow(variable->GetValueBaseText()))
      return true;
    m_way.pop_back();
    return false;
  }

  BaseSolutionManager const & m_manager;
  std::vector<AString> m_way;
  std::set<AString> m_seen;
};

} // namespace

AString SelfReference(BaseSolutionManager const & manager, AString const & expression) {
  Search search(manager);
  return search.Follow(expression) ? search.Way() : AString();
}

} // namespace desktop
