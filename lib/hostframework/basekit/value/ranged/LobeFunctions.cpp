// The category Radiation: side lobes and beamwidths of a pattern over an angle in any unit.  The unit isn't known, so
// the pattern isn't wrapped around: the main lobe must lie inside the range.

#include "basekit/value/ranged/Levels.h"
#include "basekit/value/ranged/RangedTables.h"

namespace val::ranged {

namespace {

/// Where the main lobe ends: as far as the pattern doesn't rise again.
std::size_t LeftNull(Column y, std::size_t main) {
  while (main > 0 && y[main - 1] <= y[main])
    --main;
  return main;
}

std::size_t RightNull(Column y, std::size_t main) {
  while (main + 1 < y.size() && y[main + 1] <= y[main])
    ++main;
  return main;
}

/// The highest sample, or first of a run of equal samples, with strictly lower neighbours on both sides, inside from
/// and end; the ends of the pattern are no lobes.  The highest, as in the side lobe level of IEEE 145, not the first
/// beside the main lobe; of equals the last or the first, whichever is nearer to that.
std::size_t HighestLobe(Column y, std::size_t from, std::size_t end, bool lastOfEquals) {
  std::size_t highest = kNowhere;
  std::size_t first = from;
  while (first < end) {
    std::size_t next = first + 1;
    while (next < y.size() && y[next] == y[first])
      ++next;
    bool const isLobe = first > 0 && next < y.size() && y[first - 1] < y[first] && y[next] < y[first];
    if (isLobe && (highest == kNowhere || y[first] > y[highest] || (lastOfEquals && y[first] == y[highest])))
      highest = first;
    first = next;
  }
  return highest;
}

std::size_t LeftSideLobe(Column y) { return HighestLobe(y, 0, LeftNull(y, PlaceOfMaximum(y)), true); }

std::size_t RightSideLobe(Column y) { return HighestLobe(y, RightNull(y, PlaceOfMaximum(y)) + 1, y.size(), false); }

double At(Column column, std::size_t place) { return place == kNowhere ? kNoValue : column[place]; }

/// The value itself, not relative to the main lobe
double LeftSideLobeY(RangedTrace const & trace, double const *) { return At(trace.Y(), LeftSideLobe(trace.Y())); }
double RightSideLobeY(RangedTrace const & trace, double const *) { return At(trace.Y(), RightSideLobe(trace.Y())); }
double LeftSideLobeX(RangedTrace const & trace, double const *) { return At(trace.X(), LeftSideLobe(trace.Y())); }
double RightSideLobeX(RangedTrace const & trace, double const *) { return At(trace.X(), RightSideLobe(trace.Y())); }

/// xR - xL where the pattern, going outward from its peak, has fallen by x dB: to y * 10^(-x / perDecade)
template <int perDecade> double Beamwidth(RangedTrace const & trace, double const * parameters) {
  Column const x = trace.X();
  Column const y = trace.Y();
  std::size_t const main = PlaceOfMaximum(y);
  double const level = y[main] * std::pow(10.0, -parameters[0] / perDecade);
  if (!(parameters[0] > 0.0) || !(y[main] > level))
    return kNoValue;
  auto const pattern = [y](std::size_t i) { return y[i]; };
  std::size_t const left = FallOnLeft(pattern, main, level);
  std::size_t const right = FallOnRight(pattern, main, y.size(), level);
  if (left == kNowhere || right == kNowhere)
    return kNoValue;
  return MeetingIn(x, y, right, level) - MeetingIn(x, y, left, level);
}

constexpr RangedParameter kBeam[] = {{L"x", 3.0}};

constexpr RangedInput kAny = RangedInput::kAnyTrace;
constexpr RangedFunction kLobes[] = {
    {L"lSidelobeY", kAny, {}, false, LeftSideLobeY},       {L"rSidelobeY", kAny, {}, false, RightSideLobeY},
    {L"lSidelobeX", kAny, {}, false, LeftSideLobeX},       {L"rSidelobeX", kAny, {}, false, RightSideLobeX},
    {L"xdb10Beamwidth", kAny, kBeam, true, Beamwidth<10>}, // y is a power: gain, directivity
    {L"xdb20Beamwidth", kAny, kBeam, true, Beamwidth<20>}, // y is an amplitude: field
};

} // namespace

std::span<RangedFunction const> LobeFunctions() { return kLobes; }

} // namespace val::ranged
