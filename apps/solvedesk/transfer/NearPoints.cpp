#include "apps/solvedesk/transfer/NearPoints.h"

#include "basekit/text/Utf8.h"
#include "basekit/value/Variable.h"
#include "basekit/value/variation/VariationText.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"
#include "desktop/message/NameList.h"
#include "desktop/report/ReportCheck.h"

#include <algorithm>
#include <cmath>

namespace solvedesk {
namespace {

constexpr std::size_t kMost = 3;

/// Less is nearer.
struct Remoteness {
  std::size_t differing = 0; ///< variables
  double distance = 0.0;     ///< of their values, each relative to the greater one
  friend auto operator<=>(Remoteness const &, Remoteness const &) = default;
};

double DistanceOf(VariationText::Pair const & wanted, VariationText::Pair const * there) {
  if (!there)
    return 1.0;
  if (!wanted.isNumber || !there->isNumber)
    return AString::MatchNoCase(AString(wanted.text), AString(there->text)) ? 0.0 : 1.0;
  double const a = wanted.number.real();
  double const b = there->number.real();
  double const scale = std::max(std::abs(a), std::abs(b));
  return std::isfinite(scale) && scale > 0.0 ? std::abs(a - b) / scale : 0.0;
}

Remoteness RemotenessOf(VariationText const & wanted, VariationText const & solved) {
  Remoteness sum;
  for (VariationText::Pair const & pair : wanted.Pairs()) {
    double const distance = DistanceOf(pair, solved.Find(pair.name));
    sum.differing += distance > variation::relativeTolerance ? 1 : 0;
    sum.distance += distance;
  }
  return sum;
}

bool HasName(std::vector<VariationText> const & points, std::wstring_view name) {
  return std::any_of(points.begin(), points.end(), [name](VariationText const & point) { return point.Find(name); });
}

std::vector<AString> NamesOf(VariationText const & point) {
  std::vector<AString> names;
  for (VariationText::Pair const & pair : point.Pairs())
    names.emplace_back(pair.name);
  return names;
}

AString NotTold(VariationText const & wanted, VariationText const & solved) {
  AString names;
  for (VariationText::Pair const & pair : solved.Pairs())
    if (!wanted.Find(pair.name))
      names += AString(names.empty() ? L"" : L", ") + AString(pair.name);
  return names;
}

} // namespace

AString FaultOfPoint(desktop::Design const & design, AString const & wanted, std::vector<AString> const & solved) {
  VariationText const sought(wanted);
  if (sought.Pairs().empty())
    return L"is no variation; write it as in \"C1=1.2pF; L1=4nH\"";
  std::vector<VariationText> const points(solved.begin(), solved.end());
  if (points.empty())
    return AString();
  for (VariationText::Pair const & pair : sought.Pairs()) {
    AString const name(pair.name);
    if (!HasName(points, pair.name))
      return L"no solved point has a variable '" + desktop::ShortName(name) + L"'; there are " +
             desktop::NameList(NamesOf(points.front()), name);
    try {
      if (Variable const * const variable = design.FindVariable(name))
        desktop::RefuseNoNumber(design, *variable, pair.text);
    } catch (desktop::Error const & error) {
      return text::FromUtf8(error.what());
    }
  }
  for (VariationText const & point : points)
    if (NotTold(sought, point).empty())
      return AString();
  return L"does not tell " + NotTold(sought, points.front()) + L"; a point is told by all its variables";
}

std::vector<AString> NearPoints(AString const & wanted, std::vector<AString> const & solved) {
  VariationText const sought(wanted);
  std::vector<std::pair<Remoteness, AString>> ranked;
  for (AString const & text : solved)
    ranked.emplace_back(RemotenessOf(sought, VariationText(text)), text);
  std::stable_sort(ranked.begin(), ranked.end(), [](auto const & a, auto const & b) { return a.first < b.first; });
  std::vector<AString> near;
  for (std::size_t i = 0; i < std::min(kMost, ranked.size()); ++i)
    near.push_back(ranked[i].second);
  return near;
}

} // namespace solvedesk
