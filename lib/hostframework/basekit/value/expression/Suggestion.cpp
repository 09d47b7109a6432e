#include "basekit/value/expression/Suggestion.h"

#include "basekit/text/CaseFolding.h"
#include "basekit/value/expression/Constants.h"
#include "basekit/value/expression/FunctionTable.h"
#include "basekit/value/ranged/RangedFunction.h"

#include <algorithm>
#include <utility>

namespace expr {

namespace {

constexpr std::size_t longestName = 64;

// Characters to insert, delete or replace, without case.
std::size_t Distance(std::wstring_view a, std::wstring_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j)
    row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      bool const isSame = text::FoldCase(a[i - 1]) == text::FoldCase(b[j - 1]);
      std::size_t const replaced = diagonal + (isSame ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row[b.size()];
}

class Nearest {
public:
  explicit Nearest(std::wstring_view unknown)
      : m_unknown(unknown), m_distance(std::max<std::size_t>(2, unknown.size() / 3 + 1)) {}

  void Offer(std::wstring_view name) {
    if (name.size() > longestName)
      return;
    std::size_t const distance = Distance(m_unknown, name);
    if (distance < m_distance) {
      m_distance = distance;
      m_name = name;
    }
  }
  std::wstring_view Name() const { return m_name; }

private:
  std::wstring_view m_unknown;
  std::wstring_view m_name;
  std::size_t m_distance;
};

} // namespace

AString SuggestionFor(std::wstring_view unknown, std::vector<AString> const & known) {
  if (unknown.size() > longestName)
    return {};
  Nearest whole(unknown);
  for (AString const & name : known)
    whole.Offer(name.View());
  for (std::wstring_view const name : ConstantNames())
    whole.Offer(name);
  if (!whole.Name().empty())
    return L"did you mean '" + AString(whole.Name()) + L"'?";
  std::size_t const group = unknown.find(L'(');
  if (group == std::wstring_view::npos)
    return {};
  Nearest function(unknown.substr(0, group));
  for (ElementFunction const & row : ElementFunctions())
    function.Offer(row.name);
  for (ColumnFunction const & row : ColumnFunctions())
    function.Offer(row.name);
  for (val::RangedFunction const & row : val::RangedFunctions())
    function.Offer(row.name);
  function.Offer(interpolationName);
  return function.Name().empty() ? AString() : L"did you mean the function '" + AString(function.Name()) + L"'?";
}

} // namespace expr
