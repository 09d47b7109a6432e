#include "products/rfcircuit/product/SweepPlan.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"
#include "products/rfcircuit/engine/netlist/Netlist.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/product/SweepSettings.h"

#include <algorithm>

namespace rfcircuit {
namespace {

wchar_t const * const kMethod = L"Method";
wchar_t const * const kAdaptive = L"adaptive";
wchar_t const * const kTarget = L"Target";
wchar_t const * const kPasses = L"Passes";
wchar_t const * const kMostPoints = L"MostPoints";
wchar_t const * const kTouchstone = L"Touchstone";
wchar_t const * const kTouchstoneZ0 = L"TouchstoneZ0";
wchar_t const * const kVoltages = L"Voltages";

void Take(io::CBlock const & settings, wchar_t const * item, char const * name, rf::SweepMethod & method) {
  double value = 0.0;
  settings >> io::named(item, value);
  if (settings.Found())
    method.Set(name, value);
}

void WriteMethod(io::CBlock & settings, rf::SweepMethod const & method) {
  if (!method.isAdaptive)
    return;
  settings << io::named(kMethod, kAdaptive) << io::named(kTarget, method.target)
           << io::named(kPasses, static_cast<long>(method.passes));
  if (method.mostPoints > 0)
    settings << io::named(kMostPoints, static_cast<long>(method.mostPoints));
}

// Throws rf::NetlistError for items that make no sense.
rf::SweepMethod ReadMethod(io::CBlock const & settings) {
  AString word;
  settings >> io::named(kMethod, word);
  if (!settings.Found())
    return rf::SweepMethod::Direct();
  if (!AString::MatchNoCase(word, kAdaptive))
    throw rf::NetlistError({}, "sweep", "there is no method '" + text::ToUtf8(word) + "'", "use adaptive or none");
  rf::SweepMethod method = rf::SweepMethod::Adaptive();
  Take(settings, kTarget, "target", method);
  Take(settings, kPasses, "passes", method);
  Take(settings, kMostPoints, "most", method);
  return method;
}

void WriteFiles(io::CBlock & settings, rf::SweepFiles const & files) {
  if (files.touchstone)
    settings << io::named(kTouchstone, true);
  if (files.z0)
    settings << io::named(kTouchstoneZ0, *files.z0);
  if (files.voltages.empty())
    return;
  io::CBlockFuncPtr const item(kVoltages);
  item->AppendRun(std::vector<double>(files.voltages));
  settings << item;
}

// Throws rf::NetlistError for items that make no sense.
rf::SweepFiles ReadFiles(io::CBlock const & settings) {
  rf::SweepFiles files;
  settings >> io::named(kTouchstone, files.touchstone);
  double z0 = 0.0;
  settings >> io::named(kTouchstoneZ0, z0);
  if (settings.Found())
    files.z0 = z0;
  if (auto const * const item =
          static_cast<io::CBlock_func *>(settings.FindItem(kVoltages, io::CBlock_item::Kind::Func))) {
    io::CBlock_func::iterator place = item->begin();
    item->QueryUnamedValues(place, files.voltages);
  }
  files.Check();
  return files;
}

} // namespace

void WritePlan(io::CBlock & settings, SweepPlan const & plan) {
  WriteSweep(settings, plan.sweep);
  WriteMethod(settings, plan.method);
  WriteFiles(settings, plan.files);
}

std::optional<SweepPlan> ReadPlan(io::CBlock const & settings, AString & error) {
  auto const sweep = ReadSweep(settings, error);
  if (!sweep)
    return std::nullopt;
  try {
    return SweepPlan{*sweep, ReadMethod(settings), ReadFiles(settings)};
  } catch (rf::NetlistError const & refused) {
    error = text::FromUtf8(refused.what());
    return std::nullopt;
  }
}

std::optional<SweepPlan> PlanOfWords(AString const & words, AString & error) {
  std::string const line = text::ToUtf8(words);
  AString const missing(L"the words are missing; write them as in 'lin 201 10meg 2g', 'dec 20 1k 1g', 'list 1g 2g' or "
                        L"'lin 10001 1g 2g adaptive target=1e-5'");
  if (words.Trimmed().empty()) {
    error = missing;
    return std::nullopt;
  }
  bool const isOneLine = std::none_of(line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; });
  try {
    auto const sweeps =
        rf::ReadNetlistText("sweep\n.sp " + (isOneLine ? line : std::string()) + "\n", "sweep").Sweeps();
    if (sweeps.size() == 1)
      return SweepPlan{sweeps.front().sweep, sweeps.front().method, sweeps.front().files};
    error = missing;
  } catch (rf::NetlistError const & refused) {
    error = text::FromUtf8("'" + line + "': " + refused.Message() + "; " + refused.Remedy());
  }
  return std::nullopt;
}

AString WordsOfPlan(SweepPlan const & plan) {
  std::string words = plan.sweep.KindName();
  auto const append = [&words](char const * before, double number) { words += before + text::ShortestReal(number); };
  if (plan.sweep.GetKind() == rf::FrequencySweep::Kind::List) {
    for (double const frequency : plan.sweep.Frequencies())
      append(" ", frequency);
  } else {
    append(" ", static_cast<double>(plan.sweep.GivenPoints()));
    append(" ", plan.sweep.Start());
    append(" ", plan.sweep.Stop());
  }
  if (plan.method.isAdaptive) {
    append(" adaptive target=", plan.method.target);
    append(" passes=", plan.method.passes);
    if (plan.method.mostPoints > 0)
      append(" most=", static_cast<double>(plan.method.mostPoints));
  }
  if (plan.files.touchstone)
    words += " touchstone";
  if (plan.files.z0)
    append(" z0=", *plan.files.z0);
  for (double const frequency : plan.files.voltages)
    append(frequency == plan.files.voltages.front() ? " voltages=" : ",", frequency);
  return text::FromUtf8(words);
}

} // namespace rfcircuit
