#include "desktop/page/CurveLook.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <unordered_map>

namespace desktop::page {
namespace {

constexpr char const * kColours[] = {"#0067b1", "#c94a00", "#00805b", "#b0418a",
                                     "#6d5bd0", "#8a6d00", "#00829b", "#4a4a4a"};
constexpr char const * kDashes[] = {"", "8 4", "2 3", "10 3 2 3", "14 4", "6 3 2 3 2 3"};
// Around the origin; the first one is a circle.
constexpr char const * kMarkers[] = {"",
                                     "M-3.4-3.4H3.4V3.4H-3.4Z",
                                     "M0-4L3.7 2.7H-3.7Z",
                                     "M0-4.4L4.4 0L0 4.4L-4.4 0Z",
                                     "M-3.4-3.4L3.4 3.4M-3.4 3.4L3.4-3.4",
                                     "M-4 0H4M0-4V4",
                                     "M0 4L3.7-2.7H-3.7Z"};
// More of them would hide the curves.
constexpr std::size_t kMostMarked = 12;
constexpr std::array<std::array<int, 3>, 5> kRamp = {
    {{0x4b, 0x1d, 0x7a}, {0x35, 0x55, 0x8f}, {0x1d, 0x7f, 0x8c}, {0x2f, 0x91, 0x50}, {0xa5, 0x86, 0x00}}};

std::string RampColour(double part) {
  double const place = part * (kRamp.size() - 1.000001);
  auto const stop = static_cast<std::size_t>(place);
  double const rest = place - static_cast<double>(stop);
  auto const channel = [&](std::size_t at) {
    return static_cast<int>(std::lround(kRamp[stop][at] + rest * (kRamp[stop + 1][at] - kRamp[stop][at])));
  };
  return fmt::format("#{:02x}{:02x}{:02x}", channel(0), channel(1), channel(2));
}

std::string ColourOf(std::size_t place, std::size_t count) {
  if (count <= std::size(kColours))
    return kColours[place];
  return RampColour(static_cast<double>(place) / static_cast<double>(count - 1));
}

using Places = std::unordered_map<AString, std::size_t>;

// In the order of their first appearance.
std::size_t PlaceOf(Places & places, AString const & name) { return places.emplace(name, places.size()).first->second; }

} // namespace

std::vector<CurveLook> LooksOf(std::vector<std::pair<AString, AString>> const & curves) {
  Places families, variations;
  for (auto const & [name, variation] : curves) {
    PlaceOf(families, name);
    PlaceOf(variations, variation);
  }
  bool const isByFamily = variations.size() == 1;
  bool const isMarked = curves.size() > 1 && curves.size() <= kMostMarked;
  std::vector<CurveLook> looks;
  for (auto const & [name, variation] : curves) {
    std::size_t const family = families[name];
    std::size_t const place = isByFamily ? family : variations[variation];
    looks.push_back({ColourOf(place, isByFamily ? families.size() : variations.size()),
                     kDashes[family % std::size(kDashes)],
                     isMarked ? static_cast<int>(place % std::size(kMarkers)) : -1});
  }
  return looks;
}

std::string SvgMarker(CurveLook const & look, double x, double y) {
  if (look.marker < 0)
    return {};
  if (look.marker == 0)
    return fmt::format("<circle cx=\"{:.2f}\" cy=\"{:.2f}\" r=\"3.4\" fill=\"#fff\" stroke=\"{}\"/>", x, y,
                       look.colour);
  return fmt::format("<path transform=\"translate({:.2f} {:.2f})\" d=\"{}\" fill=\"#fff\" stroke=\"{}\"/>", x, y,
                     kMarkers[look.marker], look.colour);
}

} // namespace desktop::page
