// A trace in a block, named by its class:
//
//     Trace2D {
//       Name = "Trace 1"
//       Shared = true
//       X("F", 1, 0, false, 0)               the components that there are
//       Y("S21", 0, 12, false, 90)
//       Extended { ... }                     what a report keeps with the trace, when there is anything
//     }

#include "plotkit/Trace.h"

#include "CoreInterfaces/reportkern/IReporterTab.h"
#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "plotkit/ExtendedTraceInfo.h"
#include "plotkit/PostprocessMsg.h"
#include "plotkit/ReadingContext.h"
#include "plotkit/SolutionPointSet.h"
#include "plotkit/Trace3D.h"
#include "plotkit/TraceComponent.h"
#include "plotkit/TraceText.h"

namespace {

constexpr unsigned kPlaces = 3;
wchar_t const * const kAxes[kPlaces] = {L"X", L"Y", L"Z"};
wchar_t const * const kName = L"Name";
wchar_t const * const kShared = L"Shared";
wchar_t const * const kExtended = L"Extended";

bool AreEqual(TraceComponent const * a, TraceComponent const * b) { return a && b ? a->IsEqual(*b) : a == b; }

} // namespace

Trace::Trace(SolutionPointSet & pointSet, TraceComponent * x, TraceComponent * y)
    : m_pointSet(pointSet), m_abscissa(x), m_ordinate(y) {}

Trace::~Trace() = default;

void Trace::SetThirdComponent(TraceComponent * component) { m_third.reset(component); }

std::unique_ptr<TraceComponent> * Trace::At(unsigned place) {
  switch (place) {
  case 0:
    return &m_abscissa;
  case 1:
    return &m_ordinate;
  case 2:
    return Is3D() ? &m_third : nullptr;
  default:
    return nullptr;
  }
}

TraceComponent * Trace::GetLastOrdinate() const { return Is3D() ? m_third.get() : m_ordinate.get(); }

void Trace::BeginPostprocessingUpdate(PostprocessMsg & message) {
  ClearValues();
  std::vector<TraceComponent *> components;
  GetTraceComponents(components);
  for (TraceComponent * const component : components)
    component->GetValuesForEdit().Reserve(message.GetPointCount());
  SendMessageToValues(message);
}

void Trace::ClearValues() {
  std::vector<TraceComponent *> components;
  GetTraceComponents(components);
  for (TraceComponent * const component : components)
    component->ClearComponentValues();
  m_segments.Clear();
}

void Trace::AppendNewValue() {
  std::vector<TraceComponent *> components;
  GetTraceComponents(components);
  for (TraceComponent * const component : components) {
    readingcontext::Set(m_pointSet, *component);
    component->AppendPresentValue();
  }
}

bool Trace::IsEqual(TraceComponent const * x, TraceComponent const * y, TraceComponent const * z) const {
  return Is3D() && AreEqual(m_abscissa.get(), x) && AreEqual(m_ordinate.get(), y) && AreEqual(m_third.get(), z);
}

bool Trace::IsEqual(TraceComponent const * x, TraceComponent const * y) const {
  return !Is3D() && AreEqual(m_abscissa.get(), x) && AreEqual(m_ordinate.get(), y);
}

TraceComponent * Trace::GetTraceComponent(TabPage tab) const {
  switch (tab) {
  case TabPage::kX:
  case TabPage::kAngle:
  case TabPage::kSweep:
  case TabPage::kContext:
    return m_abscissa.get();
  case TabPage::kY:
  case TabPage::kRadius:
  case TabPage::kComplex:
  case TabPage::kTableColumn:
  case TabPage::kText:
    return m_ordinate.get();
  case TabPage::kZ:
    return m_third.get();
  case TabPage::kQuantity:
    return GetLastOrdinate();
  }
  return nullptr;
}

bool Trace::ReplaceComponent(TraceComponent * component, unsigned place) {
  std::unique_ptr<TraceComponent> * const current = At(place);
  if (!current)
    return false;
  if (current->get() != component)
    current->reset(component);
  ClearValues();
  MarkItDirty(true);
  return true;
}

bool Trace::SendMessageToValues(Msg & message) {
  std::vector<TraceComponent *> components;
  GetTraceComponents(components);
  bool isTaken = false;
  for (TraceComponent const * const component : components)
    if (ValueBase const * const base = component->GetValue().GetValueBase())
      isTaken = base->ReceiveMsg(message) || isTaken;
  return isTaken;
}

AString Trace::GetItemName() const { return L"Trace"; }

void Trace::SetExtendedTraceInfo(ExtendedTraceInfo * info) {
  if (m_extendedInfo.get() != info)
    m_extendedInfo.reset(info);
}

int Trace::GetTraceComponents(std::vector<TraceComponent *> & components) const {
  for (auto const * const component : {&m_abscissa, &m_ordinate, &m_third})
    if (*component)
      components.push_back(component->get());
  return static_cast<int>(components.size());
}

io::ReadError Trace::Read(io::CBlock const & block) {
  std::unique_ptr<TraceComponent> read[kPlaces];
  for (unsigned place = 0; place < kPlaces && At(place); ++place) {
    auto const * const func =
        static_cast<io::CBlock_func const *>(block.FindItem(kAxes[place], io::CBlock_item::Kind::Func));
    if (!func)
      continue;
    read[place].reset(TraceComponent::Read(*func));
    if (!read[place])
      return io::kBadContent;
  }
  for (unsigned place = 0; place < kPlaces && At(place); ++place)
    *At(place) = std::move(read[place]);
  block >> io::named(kName, m_name);
  block >> io::named(kShared, m_isShared);
  io::CBlock const * const extended = block.FindBlock(kExtended);
  m_extendedInfo.reset(extended ? new ExtendedTraceInfo(*extended) : nullptr);
  ClearValues();
  BindComponents();
  MarkItDirty(true);
  return io::kNoError;
}

bool Trace::Write(io::CBlock & block) const {
  block << io::named(kName, m_name) << io::named(kShared, m_isShared);
  TraceComponent const * const components[kPlaces] = {m_abscissa.get(), m_ordinate.get(), m_third.get()};
  for (unsigned place = 0; place < kPlaces; ++place) {
    if (!components[place])
      continue;
    io::CBlock_ptr<io::CBlock_func> const func(new io::CBlock_func(kAxes[place]));
    components[place]->Write(*func);
    block << func;
  }
  if (m_extendedInfo) {
    io::CBlock_ptr<io::CBlock> const extended(new io::CBlock(m_extendedInfo->GetContent()));
    extended->Name(kExtended);
    block << extended;
  }
  return true;
}

bool Trace::BindComponents() {
  std::vector<TraceComponent *> components;
  GetTraceComponents(components);
  bool areAllBound = true;
  for (TraceComponent * const component : components) {
    readingcontext::Set(m_pointSet, *component);
    areAllBound = (component->Bind() || component->IsPlainText()) && areAllBound;
  }
  return areAllBound;
}

void Trace::AddSegment(std::size_t point, AString const & variation, bool isMissing) {
  m_segments.Add(point, variation, GetValueCount() - m_segments.GetSampleCount(), isMissing);
}

void Trace::ArrangeSegments() {
  std::vector<ValueColumn::Range> ranges;
  if (!m_segments.Arrange(ranges))
    return;
  std::vector<TraceComponent *> components;
  GetTraceComponents(components);
  for (TraceComponent * const component : components)
    component->GetValuesForEdit().Arrange(ranges);
}

std::size_t Trace::GetValueCount() const {
  std::vector<TraceComponent *> components;
  GetTraceComponents(components);
  return components.empty() ? m_segments.GetSampleCount() : components.front()->GetValues().GetCount();
}

std::unique_ptr<Trace> Trace::Make(AString const & itemName, SolutionPointSet & pointSet) {
  if (AString::MatchNoCase(itemName, Trace2D::kTrace2DKeyword))
    return std::make_unique<Trace2D>(pointSet);
  if (AString::MatchNoCase(itemName, TraceText::kTraceTextKeyword))
    return std::make_unique<TraceText>(pointSet);
  if (AString::MatchNoCase(itemName, Trace3D::kTrace3DKeyword))
    return std::make_unique<Trace3D>(pointSet);
  return nullptr;
}
