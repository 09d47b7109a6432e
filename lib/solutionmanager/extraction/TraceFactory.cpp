#include "solutionmanager/extraction/TraceFactory.h"

#include "CoreInterfaces/reportkern/IReporter.h"
#include "CoreInterfaces/reportkern/IReporterTab.h"
#include "basekit/diag/Assert.h"
#include "basekit/value/ExpressionValue.h"
#include "basekit/value/expression/Lexer.h"
#include "plotkit/OutputVariable.h"
#include "plotkit/SolutionPointSet.h"
#include "plotkit/TextTraceComponent.h"
#include "plotkit/Trace3D.h"
#include "plotkit/TraceDescription.h"
#include "plotkit/TraceText.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/ExtractorContextSpan.h"
#include "solutionmanager/extraction/NameSpaceSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "viewkit/report/ReportFunctions.h"

#include <initializer_list>
#include <memory>

namespace {

constexpr int kOutputVariableCategory = 2;

IReporterTab * FirstTab(IReporter const & reporter, std::initializer_list<TabPage> pages) {
  for (TabPage const page : pages)
    if (IReporterTab * const tab = reporter.GetTab(page))
      return tab;
  return nullptr;
}

/// How expressions refer to a value: an expression by its text, others by their name.  A name that is no plain word
/// stands in quotes, so that the text of the component can be read again.
AString ReferenceText(ValueBase const & value) {
  return dynamic_cast<ExpressionValue const *>(&value) ? value.GetText()
                                                       : AString(expr::NameText(value.GetText().View()));
}

/// What a page of the dialog holds; the caller's to free.  Words are meant in the page's context where a component was
/// told no other.
class ComponentSet {
public:
  explicit ComponentSet(IReporterTab const * tab) {
    if (!tab)
      return;
    std::vector<TraceComponent *> components;
    tab->GetTraceComponents(components);
    for (TraceComponent * const component : components) {
      if (!component)
        continue;
      m_components.emplace_back(component);
      if (!component->GetSimValueContext() && !component->IsPlainText())
        component->SetSimValueContext(tab->GetSimValueContext());
    }
  }
  std::size_t size() const { return m_components.size(); }
  TraceComponent & operator[](std::size_t place) const { return *m_components[place]; }

private:
  std::vector<std::unique_ptr<TraceComponent>> m_components;
};

} // namespace

struct TraceFactory::Analysis {
  Units::FullUnitType units = Units::kNoUnits;
  int category = 0;
  int functionID = 0;
  bool isPass = false;
  ValueBase const * inner = nullptr;
};

IReporterTab * TraceFactory::XTab(IReporter const & reporter) {
  return FirstTab(reporter, {TabPage::kX, TabPage::kAngle, TabPage::kSweep, TabPage::kContext});
}

IReporterTab * TraceFactory::YTab(IReporter const & reporter) {
  IReporterTab * const tab =
      FirstTab(reporter, {TabPage::kY, TabPage::kRadius, TabPage::kComplex, TabPage::kTableColumn, TabPage::kText});
  return tab || reporter.Is3D() ? tab : reporter.GetTab(TabPage::kQuantity);
}

IReporterTab * TraceFactory::ZTab(IReporter const & reporter) {
  IReporterTab * const tab = reporter.GetTab(TabPage::kZ);
  return tab || !reporter.Is3D() ? tab : reporter.GetTab(TabPage::kQuantity);
}

void TraceFactory::AnalyzeFunction(Value const & value, Analysis & analysis) const {
  AString functionName;
  analysis.inner = value.StripFunction(functionName);
  if (!analysis.inner)
    return;
  analysis.functionID = rep::GetFunctionID(functionName);
  m_extractor.AnalyzeQuantity(value, analysis.units, analysis.category, analysis.isPass, analysis.inner);
}

TraceComponent * TraceFactory::MakeComponent(AString const & text) const {
  NameSpaceSetup const names(m_extractor, true);
  ValueParserSpan const parser(m_extractor.GetIValueParser());
  Value value(Units::kNoUnits);
  if (!value.SetValueText(text))
    return nullptr;
  Analysis analysis;
  AnalyzeFunction(value, analysis);
  auto * const component = new TraceComponent(value, analysis.inner ? ReferenceText(*analysis.inner) : value.GetText(),
                                              analysis.category, analysis.functionID, analysis.isPass, analysis.units);
  component->SetSimValueContext(m_extractor.GetSimValueContext());
  return component;
}

TraceComponent * TraceFactory::MakeComponent(IReporterTab const & tab, AString const & text, int functionID) const {
  AString const description =
      m_extractor.GetBaseSolution()->IsSolutionImported() ? text : AddSubcircuitToTraceDescription(text, tab.GetText());
  // The words are meant as the page says, whatever context holds now.
  ExtractorContextSpan const context(&m_extractor);
  m_extractor.SetSimValueContext(&tab.GetSimValueContext());
  NameSpaceSetup const names(m_extractor, true);
  ValueParserSpan const parser(m_extractor.GetIValueParser());
  int const type = tab.GetType();
  Analysis analysis;
  Value value(Units::kNoUnits);
  if (functionID == rep::kNoFunctionID || type != kOutputVariableCategory) {
    if (value.SetValueText(description))
      AnalyzeFunction(value, analysis);
  } else if (OutputVariable const * const variable =
                 m_extractor.GetBaseSolutionMgr()->FindOutputVariable(description)) {
    value.SetValueText(AString::Format(L"%s(%s)", Value::GetFunctionName(functionID), variable->GetValueBaseText()));
    analysis.units = value.GetUnits();
  }
  auto * const component = new TraceComponent(description, type, functionID, analysis.isPass, analysis.units);
  component->SetSimValueContext(tab.GetSimValueContext());
  return component;
}

TraceComponent * TraceFactory::Clone(TraceComponent const * component) const {
  if (!component)
    return nullptr;
  // A component that is not bound yet is bound by being cloned: in its own context where it has one, so that a trace
  // means what the user chose, whichever page was read last.
  ExtractorContextSpan const context(&m_extractor);
  if (component->GetSimValueContext())
    m_extractor.SetSimValueContext(&*component->GetSimValueContext());
  return component->Clone();
}

Trace * TraceFactory::Enter(Trace * trace, SolutionPointSet & pointSet, bool isShared) const {
  pointSet.SetUniqueTraceName(trace);
  pointSet.AddTraceToList(trace);
  trace->SetIsShared(isShared);
  return trace;
}

Trace * TraceFactory::Make2D(SolutionPointSet & pointSet, TraceComponent const * x, TraceComponent const * y,
                             bool share) const {
  bool const isShared = share && !m_extractor.GetISimDataExtractor2();
  if (Trace * const equal = isShared ? pointSet.FindTrace2D(x, y) : nullptr)
    return equal;
  std::unique_ptr<TraceComponent> ownX;
  std::unique_ptr<TraceComponent> ownY;
  {
    NameSpaceSetup const names(m_extractor, true);
    ValueParserSpan const parser(m_extractor.GetIValueParser());
    ownX.reset(Clone(x));
    ownY.reset(Clone(y));
  }
  bool const isText = dynamic_cast<TextTraceComponent const *>(x) || dynamic_cast<TextTraceComponent const *>(y);
  Trace * const trace = isText ? new TraceText(pointSet, ownX.release(), ownY.release())
                               : new Trace2D(pointSet, ownX.release(), ownY.release());
  return Enter(trace, pointSet, isShared);
}

Trace * TraceFactory::Make3D(SolutionPointSet & pointSet, TraceComponent const * x, TraceComponent const * y,
                             TraceComponent const * z, bool share) const {
  bool const isShared = share && !m_extractor.GetISimDataExtractor2();
  if (Trace * const equal = isShared ? pointSet.FindTrace3D(x, y, z) : nullptr)
    return equal;
  std::unique_ptr<TraceComponent> own[3];
  {
    NameSpaceSetup const names(m_extractor, true);
    ValueParserSpan const parser(m_extractor.GetIValueParser());
    own[0].reset(Clone(x));
    own[1].reset(Clone(y));
    own[2].reset(Clone(z));
  }
  return Enter(new Trace3D(pointSet, own[0].release(), own[1].release(), own[2].release()), pointSet, isShared);
}

void TraceFactory::MakeTraces(IReporter const & reporter, SolutionPointSet & pointSet, bool areClean,
                              std::vector<Trace *> & traces) const {
  NameSpaceSetup const names(m_extractor, true);
  ValueParserSpan const parser(m_extractor.GetIValueParser());
  auto const read = [this](IReporterTab const * tab) {
    if (tab)
      m_extractor.SetSimValueContext(&tab->GetSimValueContext());
    return ComponentSet(tab);
  };
  auto const enter = [&traces, areClean](Trace * trace) {
    if (!trace)
      return;
    traces.push_back(trace);
    trace->MarkItDirty(!areClean);
  };
  ComponentSet const xComponentSet = read(XTab(reporter));
  KVRO_ASSERT(xComponentSet.size() == 1);
  if (xComponentSet.size() == 0)
    return;
  ComponentSet const yComponentSet = read(YTab(reporter));
  KVRO_ASSERT(yComponentSet.size() > 0);
  if (!reporter.Is3D()) {
    for (std::size_t y = 0; y < yComponentSet.size(); ++y) {
      std::unique_ptr<TraceComponent> const x(Clone(&xComponentSet[0]));
      enter(m_extractor.CreateTrace2D(&pointSet, x.get(), &yComponentSet[y], true));
    }
    return;
  }
  ComponentSet const zComponentSet = read(ZTab(reporter));
  // Reported as the other two pages are: without it the report comes out empty.
  KVRO_ASSERT(zComponentSet.size() > 0);
  // The first ordinate serves on every pass: each trace is listed once for each ordinate.
  for (std::size_t y = 0; y < yComponentSet.size(); ++y)
    for (std::size_t z = 0; z < zComponentSet.size(); ++z)
      enter(m_extractor.CreateTrace3D(&pointSet, &xComponentSet[0], &yComponentSet[0], &zComponentSet[z], true));
}
