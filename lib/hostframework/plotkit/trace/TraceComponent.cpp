// A component in a block, as a function named by its axis:
//
//     Y("S21", 0, 12, false, 90, 3, 0, 2, 0, 1, 1, 0, 0)    text, category, function, pass flag, units, context
//
// The context's eight words are left out where there is none.  Expression = "..." is added where the whole expression
// does not follow from text and function, PlainText = true for a component that is plain text.

#include "plotkit/trace/TraceComponent.h"

#include "basekit/io/CBlock_func.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/value/ExpressionValue.h"
#include "plotkit/trace/TextTraceComponent.h"

namespace {

wchar_t const * const kExpression = L"Expression";
wchar_t const * const kPlainText = L"PlainText";

/// True for name(...) with nothing behind the closing parenthesis of the first one.
bool IsCallOf(AString const & text, AString const & name) {
  if (text.size() < name.size() + 2 || !AString::MatchNoCase(text.substr(0, name.size()), name) ||
      text[name.size()] != L'(')
    return false;
  int depth = 0;
  for (std::size_t place = name.size(); place < text.size(); ++place) {
    depth += text[place] == L'(' ? 1 : text[place] == L')' ? -1 : 0;
    if (depth == 0)
      return place + 1 == text.size();
  }
  return false;
}

} // namespace

TraceComponent::TraceComponent(AString const & text, int category, int functionID, bool isPass,
                               Units::FullUnitType units)
    : m_text(text), m_category(category), m_functionID(functionID), m_isPass(isPass), m_units(units) {
  m_expression = WholeText();
}

TraceComponent::TraceComponent(Value const & value, AString const & text, int category, int functionID, bool isPass,
                               Units::FullUnitType units)
    : m_text(text), m_expression(value.GetText()), m_category(category), m_functionID(functionID), m_isPass(isPass),
      m_units(units), m_value(value) {
  if (m_expression.empty())
    m_expression = WholeText();
}

TraceComponent::TraceComponent(TraceComponent const & other)
    : m_text(other.m_text), m_expression(other.m_expression), m_category(other.m_category),
      m_functionID(other.m_functionID), m_isPass(other.m_isPass), m_units(other.m_units),
      m_isPlainText(other.m_isPlainText), m_context(other.m_context), m_value(other.m_value) {}

TraceComponent::~TraceComponent() = default;

AString TraceComponent::WholeText() const {
  AString const name = m_functionID == 0 || m_text.empty() ? AString() : Value::GetFunctionName(m_functionID);
  return name.empty() || IsCallOf(m_text, name) ? m_text : name + L"(" + m_text + L")";
}

TraceComponent * TraceComponent::Clone() const {
  auto * const clone = new TraceComponent(*this);
  if (!clone->IsBound())
    clone->Bind();
  return clone;
}

void TraceComponent::ClearComponentValues() { m_values.Clear(); }

void TraceComponent::AppendComponentValue(Value const & value) { m_values.Append(value); }

void TraceComponent::AppendInvalidValue() { m_values.AppendInvalid(); }

bool TraceComponent::IsEqual(TraceComponent const & other) const {
  return m_text == other.m_text && m_expression == other.m_expression && m_category == other.m_category &&
         m_functionID == other.m_functionID && m_isPass == other.m_isPass && m_units == other.m_units &&
         m_isPlainText == other.m_isPlainText && m_context == other.m_context;
}

bool TraceComponent::IsBound() const { return !m_isPlainText && (m_value.IsNumber() || m_value.GetExpression()); }

bool TraceComponent::Bind() {
  if (!m_isPlainText && !m_expression.empty())
    m_value.SetValueText(m_expression, Units::kNoUnits);
  return IsBound();
}

void TraceComponent::AppendPresentValue() {
  if (IsBound())
    AppendComponentValue(m_value);
  else
    AppendInvalidValue();
}

AString TraceComponent::GetEntryText(std::size_t place) const {
  return m_isPlainText && place < m_values.GetCount() ? m_text : m_values.GetText(place, m_units);
}

void TraceComponent::Write(io::CBlock_func & func) const {
  func << m_text << m_category << m_functionID << m_isPass << static_cast<int>(m_units);
  if (m_context)
    m_context->WriteTo(func);
  if (m_expression != WholeText())
    func << io::named(kExpression, m_expression);
  if (m_isPlainText)
    func << io::named(kPlainText, m_isPlainText);
}

TraceComponent * TraceComponent::Read(io::CBlock_func const & func) {
  AString text;
  int category = 0;
  int functionID = 0;
  bool isPass = false;
  int units = Units::kNoUnits;
  auto place = func.begin();
  if (!func.QueryUnamedValues(place, text) || !func.QueryUnamedValues(place, category) ||
      !func.QueryUnamedValues(place, functionID) || !func.QueryUnamedValues(place, isPass) ||
      !func.QueryUnamedValues(place, units))
    return nullptr;
  SimValueContext context;
  bool const hasContext = place != func.end() && !place.IsNamed();
  if (hasContext && !context.ReadFrom(func, place))
    return nullptr;
  bool isPlainText = false;
  func >> io::named(kPlainText, isPlainText);
  if (isPlainText)
    return new TextTraceComponent(text);
  auto * const component =
      new TraceComponent(text, category, functionID, isPass, static_cast<Units::FullUnitType>(units));
  func >> io::named(kExpression, component->m_expression);
  if (hasContext)
    component->m_context = context;
  return component;
}
