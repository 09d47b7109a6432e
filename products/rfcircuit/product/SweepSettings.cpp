#include "products/rfcircuit/product/SweepSettings.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/Utf8.h"
#include "plotkit/sweep/SweepDefinition.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/engine/sweep/FrequencySweep.h"
#include "solutionmanager/definition/FrequencySolutionDefinition.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace rfcircuit {
namespace {

using rf::FrequencySweep;

wchar_t const * const kVariable = L"F";
wchar_t const * const kKind = L"Kind";
wchar_t const * const kPoints = L"Points";
wchar_t const * const kStart = L"Start";
wchar_t const * const kStop = L"Stop";
wchar_t const * const kFrequencies = L"Frequencies";
constexpr double kEqual = 1e-12;

struct SweepNumbers {
  double points = 0.0;
  double start = 0.0;
  double stop = 0.0;
};

// Throws rf::NetlistError for numbers that make no sense.
FrequencySweep MakeSweep(FrequencySweep::Kind kind, SweepNumbers const & numbers) {
  switch (kind) {
  case FrequencySweep::Kind::Decade:
    return FrequencySweep::Decade(numbers.points, numbers.start, numbers.stop);
  case FrequencySweep::Kind::Octave:
    return FrequencySweep::Octave(numbers.points, numbers.start, numbers.stop);
  default:
    return FrequencySweep::Linear(numbers.points, numbers.start, numbers.stop);
  }
}

std::optional<FrequencySweep::Kind> KindOf(AString const & word) {
  for (auto const & [name, kind] :
       {std::pair{L"lin", FrequencySweep::Kind::Linear}, std::pair{L"dec", FrequencySweep::Kind::Decade},
        std::pair{L"oct", FrequencySweep::Kind::Octave}, std::pair{L"list", FrequencySweep::Kind::List}})
    if (AString::MatchNoCase(word, name))
      return kind;
  return std::nullopt;
}

SweepDefinition::SweepType TypeOf(FrequencySweep::Kind kind) {
  switch (kind) {
  case FrequencySweep::Kind::Linear:
    return SweepDefinition::kLinearCount;
  case FrequencySweep::Kind::Decade:
    return SweepDefinition::kDecadeCount;
  case FrequencySweep::Kind::Octave:
    return SweepDefinition::kOctaveCount;
  default:
    return SweepDefinition::kNoSweepType;
  }
}

std::optional<FrequencySweep::Kind> KindOf(SweepDefinition::SweepType type) {
  for (auto const kind : {FrequencySweep::Kind::Linear, FrequencySweep::Kind::Decade, FrequencySweep::Kind::Octave})
    if (TypeOf(kind) == type)
      return kind;
  return std::nullopt;
}

bool ReadList(io::CBlock const & settings, std::vector<double> & frequencies) {
  auto const * const item =
      static_cast<io::CBlock_func *>(settings.FindItem(kFrequencies, io::CBlock_item::Kind::Func));
  if (!item)
    return false;
  io::CBlock_func::iterator place = item->begin();
  item->QueryUnamedValues(place, frequencies);
  return place == item->end();
}

bool ReadNumber(io::CBlock const & settings, wchar_t const * name, double & number) {
  settings >> io::named(name, number);
  return settings.Found();
}

FrequencySweep SweepOfSettings(io::CBlock const & settings, FrequencySweep::Kind kind) {
  auto const refuse = [](char const * missing) {
    throw rf::NetlistError({}, "sweep", std::string(missing) + " is missing", "define the sweep of the setup anew");
  };
  if (kind == FrequencySweep::Kind::List) {
    std::vector<double> frequencies;
    if (!ReadList(settings, frequencies))
      refuse("the list of frequencies");
    return FrequencySweep::List(std::move(frequencies));
  }
  SweepNumbers numbers;
  if (!ReadNumber(settings, kPoints, numbers.points))
    refuse("the number of points");
  if (!ReadNumber(settings, kStart, numbers.start))
    refuse("the start frequency");
  if (!ReadNumber(settings, kStop, numbers.stop))
    refuse("the stop frequency");
  return MakeSweep(kind, numbers);
}

} // namespace

void WriteSweep(io::CBlock & settings, FrequencySweep const & sweep) {
  settings << io::named(kKind, text::FromUtf8(sweep.KindName()));
  if (sweep.GetKind() == FrequencySweep::Kind::List) {
    io::CBlockFuncPtr const item(kFrequencies);
    item->AppendRun(sweep.Frequencies());
    settings << item;
    return;
  }
  settings << io::named(kPoints, static_cast<long>(sweep.GivenPoints())) << io::named(kStart, sweep.Start())
           << io::named(kStop, sweep.Stop());
}

std::optional<FrequencySweep> ReadSweep(io::CBlock const & settings, AString & error) {
  AString word;
  settings >> io::named(kKind, word);
  auto const kind = KindOf(word);
  if (!kind) {
    error = word.empty() ? AString(L"sweep: the settings hold none; define the sweep of the setup anew")
                         : L"sweep: there is no kind '" + word + L"'; use lin, dec, oct or list";
    return std::nullopt;
  }
  try {
    return SweepOfSettings(settings, *kind);
  } catch (rf::NetlistError const & refused) {
    error = text::FromUtf8(refused.what());
    return std::nullopt;
  }
}

SweepDefinition * MakeSweepDefinition(FrequencySweep const & sweep) {
  if (sweep.GetKind() == FrequencySweep::Kind::List)
    return nullptr;
  auto definition = std::make_unique<SweepDefinition>(kVariable, TypeOf(sweep.GetKind()), sweep.Start(), sweep.Stop());
  definition->SetCount(static_cast<unsigned>(sweep.GivenPoints()));
  return definition.release();
}

std::optional<FrequencySweep> SweepOf(SweepDefinition const & definition) {
  auto const kind = KindOf(definition.GetType());
  if (!kind || definition.GetVariableName() != kVariable)
    return std::nullopt;
  try {
    return MakeSweep(*kind, {static_cast<double>(definition.GetCount()), definition.GetStart(), definition.GetStop()});
  } catch (rf::NetlistError const &) {
    return std::nullopt;
  }
}

void DescribeSweep(FrequencySweep const & sweep, FrequencySolutionDefinition & definition) {
  std::vector<double> const solved = sweep.Frequencies();
  if (sweep.GetKind() != FrequencySweep::Kind::List) {
    definition.SetSamplingInfo(sweep.Start(), sweep.Stop(), static_cast<unsigned>(sweep.GivenPoints()),
                               definition.GetCenterFreq(), TypeOf(sweep.GetKind()));
    std::vector<double> generated;
    definition.GetFrequencies(generated);
    auto const isEqual = [](double a, double b) { return std::abs(a - b) <= kEqual * std::abs(b); };
    if (std::equal(generated.begin(), generated.end(), solved.begin(), solved.end(), isEqual))
      return;
  }
  definition = FrequencySolutionDefinition(solved, definition.GetType());
}

} // namespace rfcircuit
