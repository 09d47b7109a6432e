#include "desktop/pageview/ReportItems.h"

#include "basekit/value/variation/VariationText.h"
#include "desktop/pageview/CurveFamilies.h"
#include "desktop/pageview/Reference.h"
#include "desktop/project/Session.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace desktop::pageview {

namespace {

using Column = ReportTable::Column;
using Role = Column::Role;

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();
/// Samples count as even on a logarithmic axis up to this part of a step.
constexpr double kEvenStep = 1e-6;
constexpr double kLeastLogarithmicRange = 4.0;

AString UnitOf(Column const & column) {
  return column.units == Units::kNoUnits ? AString() : Units::GetSymbol(column.units);
}

/// What a cell with a number is told as: itself, or a part of a complex one.
struct Part {
  enum class Which { kWhole, kRe, kIm, kMag, kDeg };
  std::size_t column = 0;
  Which which = Which::kWhole;
  AString title;
  AString unit;

  double Of(std::complex<double> const & value) const {
    switch (which) {
    case Which::kIm:
      return value.imag();
    case Which::kMag:
      return std::abs(value);
    case Which::kDeg:
      return std::arg(value) * 180.0 / std::numbers::pi;
    default:
      return value.real();
    }
  }
};

std::vector<Part> PartsOf(ReportTable const & table, std::size_t place, Look const & look) {
  Column const & column = table.Columns()[place];
  AString const unit = UnitOf(column);
  if (!column.isComplex)
    return {{place, Part::Which::kWhole, column.title, unit}};
  if (look.isPolar)
    return {{place, Part::Which::kMag, L"mag(" + column.title + L")", unit},
            {place, Part::Which::kDeg, L"phase(" + column.title + L")", L"deg"}};
  return {{place, Part::Which::kRe, L"re(" + column.title + L")", unit},
          {place, Part::Which::kIm, L"im(" + column.title + L")", unit}};
}

/// Whether samples lie evenly on a logarithmic axis.
bool IsLogarithmic(std::vector<double> const & x) {
  if (x.size() < 3 || !(x.front() > 0.0) || !(x.back() >= x.front() * kLeastLogarithmicRange))
    return false;
  double const step = std::log(x.back() / x.front()) / static_cast<double>(x.size() - 1);
  for (std::size_t i = 1; i < x.size(); ++i)
    if (!(std::abs(std::log(x[i] / x[i - 1]) - step) <= kEvenStep * step))
      return false;
  return true;
}

page::PlotAxis AbscissaOf(CurveFamilies const & families, ReportTable const & table) {
  Column const & column = table.Columns()[families.XColumn()];
  auto const & curves = families.Curves();
  return {column.title, UnitOf(column), !curves.empty() && IsLogarithmic(curves.front().x)};
}

bool HasNumbers(CurveFamilies const & families) {
  return std::any_of(families.Curves().begin(), families.Curves().end(), [](auto const & curve) {
    return std::any_of(curve.x.begin(), curve.x.end(), [](double x) { return !std::isnan(x); });
  });
}

/// Puts the curves of a report into plots, column by column.
class Drawing {
public:
  Drawing(Session & session, ReportDefinition const & report, ReportTable const & table, Look const & look,
          CurveFamilies const & families)
      : m_session(session), m_report(report), m_table(table), m_look(look), m_families(families) {}

  void Add(std::size_t place) {
    Column const & column = m_table.Columns()[place];
    ReportDisplay const display = DisplayOf(column);
    if (display == ReportDisplay::kRectangular)
      for (Part const & part : PartsOf(m_table, place, m_look))
        AddRectangular(part);
    else if (display == ReportDisplay::kSmith && column.units == Units::kNoUnits)
      AddRound(SmithFor(ReferenceOf(m_session, column.title)).series, place);
    else
      AddRound(PolarFor(UnitOf(column)).series, place);
  }

  /// The plots, which are told apart by what they show.
  std::vector<page::Item> Titled() {
    for (page::Item & item : m_items)
      std::visit(
          [this](auto & plot) {
            if constexpr (requires { plot.series; })
              plot.title = m_items.size() == 1 ? m_report.name : m_report.name + L": " + NamesOf(plot.series);
          },
          item);
    return std::move(m_items);
  }

private:
  ReportDisplay DisplayOf(Column const & column) const {
    ReportDisplay const display = m_look.display.value_or(m_report.display);
    if (!column.isComplex)
      return ReportDisplay::kRectangular;
    if (display != ReportDisplay::kTable)
      return display;
    return PortOfReflection(column.title) ? ReportDisplay::kSmith : ReportDisplay::kPolar;
  }

  void AddRectangular(Part const & part) {
    page::RectangularPlot & plot = RectangularFor(part.unit);
    // One that is drawn alone names its axis.
    plot.y.title = plot.series.empty() ? part.title : AString();
    for (CurveFamilies::Curve const & curve : m_families.Curves()) {
      page::Series series{part.title, curve.variation, curve.x, {}};
      for (std::complex<double> const & value : m_families.Values(curve, part.column))
        series.y.push_back(std::isnan(value.real()) && std::isnan(value.imag()) ? kMissing : part.Of(value));
      plot.series.push_back(std::move(series));
    }
  }

  void AddRound(std::vector<page::ComplexSeries> & all, std::size_t place) {
    for (CurveFamilies::Curve const & curve : m_families.Curves())
      all.push_back({m_table.Columns()[place].title, curve.variation, curve.x, m_families.Values(curve, place)});
  }

  template <class Plot, class IsSame> Plot & Find(IsSame const & isSame) {
    for (page::Item & item : m_items)
      if (Plot * const plot = std::get_if<Plot>(&item); plot && isSame(*plot))
        return *plot;
    return std::get<Plot>(m_items.emplace_back(Plot()));
  }

  page::RectangularPlot & RectangularFor(AString const & unit) {
    auto & plot = Find<page::RectangularPlot>([&](auto const & other) { return other.y.unit == unit; });
    plot.x = AbscissaOf(m_families, m_table);
    plot.y.unit = unit;
    return plot;
  }

  page::PolarPlot & PolarFor(AString const & unit) {
    auto & plot = Find<page::PolarPlot>([&](auto const & other) { return other.unit == unit; });
    plot.parameter = AbscissaOf(m_families, m_table);
    plot.unit = unit;
    return plot;
  }

  page::SmithChart & SmithFor(std::optional<double> impedance) {
    auto & chart = Find<page::SmithChart>([&](auto const & other) { return other.impedance == impedance; });
    chart.parameter = AbscissaOf(m_families, m_table);
    chart.impedance = impedance;
    return chart;
  }

  template <class Series> static AString NamesOf(std::vector<Series> const & all) {
    AString names;
    AString last;
    for (Series const & series : all) {
      if (series.name != last)
        names += (names.empty() ? AString() : AString(L", ")) + series.name;
      last = series.name;
    }
    return names;
  }

  Session & m_session;
  ReportDefinition const & m_report;
  ReportTable const & m_table;
  Look const & m_look;
  CurveFamilies const & m_families;
  std::vector<page::Item> m_items;
};

/// A column of variables is of texts where one of them is no number.
page::Table::Column CellsOf(ReportTable const & table, Part const & part) {
  std::vector<double> numbers;
  std::vector<AString> texts;
  bool isText = false;
  for (std::size_t row = 0; row < table.RowCount(); ++row) {
    auto const value = table.At(row, part.column);
    numbers.push_back(value ? part.Of(*value) : kMissing);
    isText = isText || (!value && !table.TextAt(row, part.column).empty());
  }
  if (!isText)
    return {part.title, part.unit, std::move(numbers)};
  for (std::size_t row = 0; row < table.RowCount(); ++row)
    texts.push_back(table.TextAt(row, part.column));
  return {part.title, part.unit, std::move(texts)};
}

/// The variation of the longest curve that the table has, at what else the report stands at.
AString LongestVariation(ReportDefinition const & report, ReportTable const & table) {
  std::optional<ReportTable::Variation> longest;
  for (ReportTable::Variation const & variation : table.Variations())
    if (!variation.isGap && (!longest || variation.rows > longest->rows))
      longest = variation;
  variation::Writer text;
  VariationText const given(report.variation);
  for (VariationText::Pair const & pair : given.Pairs())
    text.Add(pair.name, pair.text);
  for (std::size_t i = 0; longest && i < table.VariableCount(); ++i)
    if (AString const value = table.TextAt(longest->firstRow, i); !value.empty())
      text.Add(table.Columns()[i].title.View(), value.View());
  return text.Take();
}

} // namespace

ReportItems::ReportItems(Session & session, ReportDefinition const & report, Look const & look)
    : m_session(session), m_report(report), m_look(look), m_singles(FindSingles()),
      m_shown(session.GetLiveReports().Show(report)) {}

// Whether an expression is one number for a variation, or a curve that happens to be flat, shows when it is evaluated
// at one without anything to run over.
std::vector<std::size_t> ReportItems::FindSingles() {
  LiveReports & live = m_session.GetLiveReports();
  std::vector<std::size_t> candidates;
  ReportDefinition question = m_report;
  question.name = AString();
  question.x = AString();
  question.over.clear();
  {
    LiveReports::Shown const shown = live.Show(m_report);
    CurveFamilies const families(shown);
    std::size_t const firstY = shown.table.Columns().size() - m_report.y.size();
    for (std::size_t i = 0; i < m_report.y.size(); ++i)
      if (families.IsConstant(firstY + i) && !families.IsEmpty(firstY + i))
        candidates.push_back(i);
    question.variation = LongestVariation(m_report, shown.table);
  }
  std::erase_if(candidates, [&](std::size_t i) {
    question.y = {m_report.y[i]};
    LiveReports::Shown const shown = live.Evaluate(question);
    bool const isSingle = shown.problems.empty() && shown.table.LongestCurve() <= 1;
    live.Forget(question);
    return !isSingle;
  });
  return candidates;
}

bool ReportItems::IsSingle(std::size_t column) const {
  std::size_t const firstY = m_shown.table.Columns().size() - m_report.y.size();
  return std::find(m_singles.begin(), m_singles.end(), column - firstY) != m_singles.end();
}

std::vector<page::Item> ReportItems::Plots() const {
  CurveFamilies const families(m_shown);
  if (!families.HasAbscissa() || m_look.display == ReportDisplay::kTable || !HasNumbers(families))
    return {};
  Drawing drawing(m_session, m_report, m_shown.table, m_look, families);
  for (std::size_t i = 0; i < m_shown.table.Columns().size(); ++i)
    if (m_shown.table.Columns()[i].role == Role::kY && !IsSingle(i) && !families.IsEmpty(i))
      drawing.Add(i);
  return drawing.Titled();
}

page::Numbers ReportItems::Numbers() const {
  page::Numbers numbers{m_report.name + L": numbers", {}};
  ReportTable const & table = m_shown.table;
  CurveFamilies const families(m_shown);
  for (std::size_t column = 0; column < table.Columns().size(); ++column) {
    if (table.Columns()[column].role != Role::kY || (families.HasAbscissa() && !IsSingle(column)))
      continue;
    for (Part const & part : PartsOf(table, column, m_look))
      for (CurveFamilies::Curve const & curve : families.Curves()) {
        auto const value = table.At(curve.rows.front(), column);
        numbers.entries.push_back({part.title, curve.variation, value ? part.Of(*value) : kMissing, part.unit,
                                   value ? AString() : AString(L"there is none here")});
      }
  }
  return numbers;
}

page::Table ReportItems::Table() const {
  page::Table table{m_report.name, {}};
  for (std::size_t column = 0; column < m_shown.table.Columns().size(); ++column)
    for (Part const & part : PartsOf(m_shown.table, column, m_look))
      table.columns.push_back(CellsOf(m_shown.table, part));
  return table;
}

} // namespace desktop::pageview
