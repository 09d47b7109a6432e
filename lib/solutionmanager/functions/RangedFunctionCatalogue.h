#pragma once

#include "solutionmanager/functions/RangedFunctionScales.h"
#include "viewkit/property/PropList.h"

#include <span>
#include <string_view>

/// What the core catalogue of ranged functions holds, as it is shown.
namespace ranged {

/// The lists of parameters that functions share.
enum class Parameters {
  kNone,
  kFindX,
  kFindY,
  kFindWidth,
  kFrequency,
  kTarget,
  kTolerance,
  kBand,
  kDeviation,
  kPulse,
  kShoot,
  kPeriod,
  kAC,
  kBeam,
  kEye,
  kEyePoint
};

struct CatalogueRow {
  std::wstring_view name;
  Scale scale = Scale::kNone;
  Parameters parameters = Parameters::kNone;
  std::wstring_view description;
};

struct CatalogueGroup {
  std::wstring_view category;
  std::span<CatalogueRow const> rows;
};

/// In the order of the catalogue; a category may have several groups.
std::span<CatalogueGroup const> CatalogueGroups();

PropList ParameterList(Parameters parameters);

} // namespace ranged
