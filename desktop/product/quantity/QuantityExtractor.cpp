// Which quantities there are, and what is known of them.

#include "desktop/product/quantity/QuantityExtractor.h"

#include "CoreInterfaces/desktop/IDesign.h"
#include "basekit/value/Variable.h"
#include "desktop/product/quantity/LoadedQuantities.h"
#include "plotkit/simvalue/SimValue.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <algorithm>

namespace desktop {
namespace {

// Plots in the complex plane; real quantities make no sense there.
bool IsPolar(rep::DisplayType displayType) {
  int const number = static_cast<int>(displayType);
  return number == 2 || number == 5 || number == 9 || number == 11;
}

} // namespace

QuantityExtractor::QuantityExtractor(BaseSolutionManager * manager, BaseSolution * solution)
    : BaseSimDataExtractor(manager, solution), m_variations(*solution) {}

// A solution that dies with something loaded takes its variations along.
QuantityExtractor::~QuantityExtractor() {
  if (m_loaded)
    m_loaded->memory->Abandon();
  if (m_question && m_question->memory)
    m_question->memory->Abandon();
}

IQuantityCatalogue const & QuantityExtractor::GetCatalogue() const {
  BaseSolution const & solution = *GetBaseSolution();
  long const version = solution.GetClosestVersionWithData();
  bool const isCurrent =
      m_catalogue && m_catalogueVersion == version && (m_catalogueSize < 0 || m_catalogueSize == solution.size());
  if (isCurrent)
    return *m_catalogue;
  m_catalogueVersion = version;
  m_catalogueSize = -1;
  auto made = MakeCatalogueOfData();
  if (!made) {
    made = MakeCatalogue(nullptr);
    m_catalogueSize = solution.size();
  }
  m_catalogue = std::make_unique<KnownCatalogue>(std::move(made));
  return *m_catalogue;
}

void QuantityExtractor::ForgetCatalogue() {
  m_catalogue.reset();
  m_sweepsAreCurrent = false;
}

void QuantityExtractor::ForgetMadeCatalogue() {
  if (!m_catalogue || !m_catalogue->ForgetMade())
    ForgetCatalogue();
}

IQuantityCatalogue const & QuantityExtractor::GetMadeCatalogue() const {
  GetCatalogue();
  return m_catalogue->Made();
}

void QuantityExtractor::RefreshVariations() const {
  if (m_variations.Refresh())
    m_sweepsAreCurrent = false;
}

std::unique_ptr<IQuantityCatalogue> QuantityExtractor::MakeCatalogueOfData() const {
  VariableValues nominal;
  AddNominalValues(nominal);
  RefreshVariations();
  auto const solved = FindSolved(nominal);
  auto made = MakeCatalogueOfQuestion(solved);
  if (!made && solved)
    made = MakeCatalogueOf(*solved);
  for (auto text = m_variations.GetTexts().begin(); !made && text != m_variations.GetTexts().end(); ++text)
    made = MakeCatalogueOf(*text);
  return made;
}

// Sets refer to the samples of the catalogue, and stay when the question is over.
std::unique_ptr<IQuantityCatalogue>
QuantityExtractor::MakeCatalogueOfQuestion(std::optional<AString> const & nominal) const {
  if (!m_question || m_question->variation.empty() || GetSolutionPointSetsSize() > 0)
    return nullptr;
  auto const asked = FindSolved(m_question->variation);
  if (!asked || asked == nominal)
    return nullptr;
  auto made = MakeCatalogueOf(*asked);
  m_question->hasOwnCatalogue = made != nullptr;
  return made;
}

std::unique_ptr<IQuantityCatalogue> QuantityExtractor::MakeCatalogueOf(AString const & variation) const {
  auto const memory = Bring(variation);
  return memory ? MakeCatalogue(&memory->Get()) : nullptr;
}

QuantityReportType const * QuantityExtractor::FindReportType(unsigned number) const {
  for (QuantityReportType const & reportType : GetCatalogue().GetReportTypes())
    if (reportType.number == number)
      return &reportType;
  return nullptr;
}

bool QuantityExtractor::IsSupportedReportTypes(std::vector<unsigned> const & reportTypes) const {
  return !reportTypes.empty() && std::all_of(reportTypes.begin(), reportTypes.end(),
                                             [this](unsigned number) { return FindReportType(number) != nullptr; });
}

int QuantityExtractor::GetCategoryNames(std::vector<AString> & names, unsigned reportType, rep::DisplayType, int,
                                        AString const * filter) const {
  for (AString const & category : GetCatalogue().GetCategories(reportType))
    if (!filter || filter->empty() || AString::MatchNoCase(category, *filter))
      names.push_back(category);
  return static_cast<int>(names.size());
}

int QuantityExtractor::GetQuantityNames(std::vector<AString> & names, AString const & category, unsigned reportType,
                                        rep::DisplayType displayType, SimValueContext const &) const {
  IQuantityCatalogue const & catalogue = GetCatalogue();
  for (AString const & there : catalogue.GetCategories(reportType)) {
    if (!category.empty() && !AString::MatchNoCase(there, category))
      continue;
    for (AString const & name : catalogue.GetNames(there, reportType)) {
      QuantityInfo info;
      bool const isComplex =
          catalogue.Describe(name, info) && postp::GetBasicParamType(info.state.parameterType) == val::kComplex;
      if (isComplex || !IsPolar(displayType))
        names.push_back(name);
    }
  }
  return static_cast<int>(names.size());
}

ValueState QuantityExtractor::GetQuantityType(AString const & text, int) const {
  QuantityInfo info;
  return GetCatalogue().Describe(text, info) ? info.state : ValueState();
}

SimValue * QuantityExtractor::CreateSimValue(AString const & text, SimValueContext const & context) {
  QuantityInfo info;
  return GetCatalogue().Describe(text, info) ? new SimValue(text, context, info.state) : nullptr;
}

SimValue * QuantityExtractor::CreateSimValue() { return BaseSimDataExtractor::CreateSimValue(); }

bool QuantityExtractor::HasContexts(unsigned reportType) const {
  QuantityReportType const * const type = FindReportType(reportType);
  return type && !type->contexts.empty();
}

AString QuantityExtractor::GetContextUILabel(unsigned reportType) const {
  QuantityReportType const * const type = FindReportType(reportType);
  return type ? type->contextLabel : AString();
}

bool QuantityExtractor::GetContexts(std::vector<SimValueContext> & contexts, unsigned reportType) const {
  contexts.clear();
  QuantityReportType const * const type = FindReportType(reportType);
  SimValueContext const usual;
  for (unsigned number = 0; type && number < type->contexts.size(); ++number)
    contexts.emplace_back(usual.GetKind(), usual.GetCalculationType(), usual.GetFirst(), number, 1.0, 1.0, 0.0, 0.0);
  return !contexts.empty();
}

long QuantityExtractor::GetContextID(SimValueContext const & context) const { return context.GetSecond(); }

AString QuantityExtractor::GetContextName(SimValueContext const & context) const {
  for (QuantityReportType const & reportType : GetCatalogue().GetReportTypes())
    if (context.GetSecond() < reportType.contexts.size())
      return reportType.contexts[context.GetSecond()];
  return AString();
}

std::vector<Variable *> QuantityExtractor::DesignVariables() const {
  std::vector<Variable *> variables;
  if (IDesign const * const design = GetBaseSolutionMgr()->GetIDesign())
    design->GetPropertyVariables(variables);
  variables.erase(std::remove(variables.begin(), variables.end(), nullptr), variables.end());
  return variables;
}

void QuantityExtractor::AddNominalValues(VariableValues & values) const {
  for (Variable const * const variable : DesignVariables())
    values.Add(variable->GetName(), variable->GetValue());
}

} // namespace desktop
