// The numbers of one variation at a time.

#include "basekit/value/Variable.h"
#include "basekit/value/units/Tolerance.h"
#include "desktop/product/ImportedSolution.h"
#include "desktop/product/quantity/LoadedQuantities.h"
#include "desktop/product/quantity/QuantityColumn.h"
#include "desktop/product/quantity/QuantityExtractor.h"
#include "plotkit/simvalue/SimValue.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <algorithm>
#include <limits>

namespace desktop {
namespace {

bool IsSamePlace(double a, double b) { return val::EqualWithin(a, b, 1e-12, 0.0); }

// The sample of each wanted place; the size of the axis where it has none.
std::vector<std::size_t> PlacesOn(std::vector<double> const & axis, std::vector<double> const & wanted) {
  std::vector<std::size_t> places;
  std::size_t next = 0; // both mostly ascend, so the next one is right behind
  for (double const place : wanted) {
    auto const isHere = [place](double at) { return IsSamePlace(at, place); };
    auto found = std::find_if(axis.begin() + static_cast<std::ptrdiff_t>(next), axis.end(), isHere);
    if (found == axis.end())
      found = std::find_if(axis.begin(), axis.end(), isHere);
    places.push_back(static_cast<std::size_t>(found - axis.begin()));
    if (found != axis.end())
      next = places.back();
  }
  return places;
}

// The samples at the places; past the end there is no value.
void Pick(QuantityColumn & column, std::vector<std::size_t> const & places) {
  std::visit(
      [&](auto & numbers) {
        double const none = std::numeric_limits<double>::quiet_NaN();
        std::decay_t<decltype(numbers)> picked;
        picked.reserve(places.size());
        for (std::size_t const place : places)
          picked.push_back(place < numbers.size() ? numbers[place] : none);
        numbers = std::move(picked);
      },
      column.numbers);
}

template <class Number> bool Give(QuantityColumn & column, std::vector<Number> & numbers) {
  auto * const held = std::get_if<std::vector<Number>>(&column.numbers);
  if (held)
    numbers = std::move(*held);
  return held != nullptr;
}

} // namespace

VariationInMemory::~VariationInMemory() {
  if (!m_wasThere)
    m_variation.ClearInstanceMemoryData();
}

std::unique_ptr<VariationInMemory> QuantityExtractor::Bring(AString const & variation) const {
  BaseSolution & solution = *GetBaseSolution();
  long const version = solution.GetClosestVersionWithData();
  bool const isThere = solution.HasLoadedSolutionData(variation, version);
  BaseSolutionVariation * const there =
      LoadVariation(solution, VariationIDIndex(variation, version, GetBaseSolutionMgr()));
  auto memory = there ? std::make_unique<VariationInMemory>(*there, isThere) : nullptr;
  if (!there || !there->HasSolutionData())
    return nullptr;
  // What is loaded may refer to what the question brought before.
  if (!m_question || m_loaded || isThere)
    return memory;
  m_question->memory = std::move(memory);
  return std::make_unique<VariationInMemory>(*there, true);
}

void QuantityExtractor::BeginQuestion(VariableValues const & variation) {
  EndQuestion();
  m_question = std::make_unique<QuestionUnderWay>();
  for (Variable const * const variable : DesignVariables())
    if (Value const * const value = variation.Find(variable->GetName()))
      m_question->variation.Set(variable->GetName(), *value);
  if (!variation.empty())
    AddNominalValues(m_question->variation);
}

void QuantityExtractor::EndQuestion() {
  m_loaded.reset();
  if (m_question && m_question->hasOwnCatalogue) {
    if (!m_catalogue || !m_catalogue->ForgetMade())
      m_catalogue.reset();
    m_axisSweepsAreCurrent = false;
  }
  m_question.reset();
}

std::optional<AString> QuantityExtractor::FindSolved(VariableValues const & values) const {
  // Imported data is that of no variation, and the only one.
  if (GetBaseSolution()->IsSolutionImported())
    return AString();
  AString const text = values.GetVariationKey();
  // To ask for a variation that is not known would make it known, and write that into the library.
  long id = id::invalidID;
  if (!GetBaseSolutionMgr()->FindVariationID(text, id))
    return std::nullopt;
  BaseSolution const & solution = *GetBaseSolution();
  auto const * const solved = solution.GetBaseSolutionVariation(text, solution.GetClosestVersionWithData());
  if (!solved)
    return std::nullopt;
  return solved->GetDesignVariationKey();
}

unsigned QuantityExtractor::ChooseReportType(std::vector<unsigned> const & reportTypes) const {
  for (unsigned const number : reportTypes)
    if (FindReportType(number))
      return number;
  return GetCatalogue().GetReportTypes().front().number;
}

bool QuantityExtractor::LoadSolvedData(VariableValues const & first, VariableValues const & second,
                                       std::vector<unsigned> const & reportTypes,
                                       std::map<unsigned, std::vector<AString>> const &, IProgressMonitor *) {
  VariableValues values = first;
  for (auto const & [name, value] : second)
    values.Set(name, value);
  AddNominalValues(values);
  auto const variation = FindSolved(values);
  if (!variation || !m_loaded || m_loaded->variation != *variation) {
    m_loaded.reset();
    auto memory = variation ? Bring(*variation) : nullptr;
    auto quantities = memory ? OpenQuantities(memory->Get()) : nullptr;
    if (!quantities)
      return false;
    m_loaded = std::make_unique<LoadedQuantities>();
    m_loaded->variation = *variation;
    m_loaded->memory = std::move(memory);
    m_loaded->quantities = std::move(quantities);
  }
  m_loaded->reportType = ChooseReportType(reportTypes);
  if (ChooseSamples())
    return true;
  m_loaded.reset();
  return false;
}

bool QuantityExtractor::ChooseSamples() {
  m_loaded->axis.clear();
  m_loaded->places.clear();
  m_loaded->isNarrowed = false;
  QuantityReportType const * const type = FindReportType(m_loaded->reportType);
  if (!type || type->axis.empty())
    return true;
  if (!m_loaded->quantities->GetAxis(type->number, m_loaded->axis))
    return false;
  // One evaluation assumes one place of the axis.
  VariableValues const & place = GetSpecialSweepVariation();
  Value const * const named = place.Find(type->axis);
  Value const * const assumed = named ? named : place.Find(type->intrinsic);
  if (!assumed || !assumed->IsNumber())
    return true;
  std::size_t const sample = PlacesOn(m_loaded->axis, {assumed->GetSIValue()}).front();
  if (sample == m_loaded->axis.size())
    return false;
  m_loaded->isNarrowed = true;
  m_loaded->places = {sample};
  m_loaded->axis = {m_loaded->axis[sample]};
  return true;
}

void QuantityExtractor::FinishLoadingSolvedData() {
  if (!m_question)
    m_loaded.reset();
}

std::size_t QuantityExtractor::GetSampleCount() const {
  if (!m_loaded)
    return 0;
  QuantityReportType const * const type = FindReportType(m_loaded->reportType);
  return !type || type->axis.empty() ? 1 : m_loaded->axis.size();
}

bool QuantityExtractor::GetVariableColumn(AString const & variable, std::vector<double> & values) const {
  QuantityReportType const * const type = m_loaded ? FindReportType(m_loaded->reportType) : nullptr;
  if (!type || type->axis.empty() || !IsAxisOf(*type, variable))
    return false;
  values = m_loaded->axis;
  return true;
}

bool QuantityExtractor::TakeColumn(SimValue const & value, QuantityColumn & column) const {
  QuantityInfo info;
  if (!m_loaded || !GetCatalogue().Describe(value.GetText(), info))
    return false;
  // An axis may be a quantity too, of one report type; it names the samples of each.
  if (QuantityColumn::Reals axis; GetVariableColumn(value.GetText(), axis)) {
    column.numbers = std::move(axis);
    return true;
  }
  if (!m_loaded->quantities->GetColumn(value.GetText(), value.GetSimValueContext().GetSecond(), column))
    return false;
  if (info.reportType == m_loaded->reportType) {
    if (m_loaded->isNarrowed)
      Pick(column, m_loaded->places);
    return column.Size() == GetSampleCount();
  }
  QuantityReportType const * const own = FindReportType(info.reportType);
  QuantityReportType const * const asked = FindReportType(m_loaded->reportType);
  if (!own || !asked)
    return false;
  std::vector<double> axis;
  if (own->axis.empty())
    Pick(column, std::vector<std::size_t>(GetSampleCount(), 0)); // one number for all places
  else if (AString::MatchNoCase(own->axis, asked->axis) && m_loaded->quantities->GetAxis(own->number, axis))
    Pick(column, PlacesOn(axis, m_loaded->axis));
  else
    return false;
  return true;
}

bool QuantityExtractor::GetSimValueColumn(SimValue const & value, std::vector<double> & numbers) const {
  QuantityColumn column;
  return TakeColumn(value, column) && Give(column, numbers);
}

bool QuantityExtractor::GetSimValueColumn(SimValue const & value, std::vector<AComplex<double>> & numbers) const {
  QuantityColumn column;
  return TakeColumn(value, column) && Give(column, numbers);
}

} // namespace desktop
