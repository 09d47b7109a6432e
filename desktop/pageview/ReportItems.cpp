#include "desktop/pageview/ReportItems.h"

#include "desktop/pageview/CurveFamilies.h"
#include "desktop/pageview/Reference.h"

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

/// Puts the curves of a report into plots.
class Drawing {
public:
  Drawing(Session & session, ReportDefinition const & report, LiveReports::Shown const & shown, Look const & look)
      : m_session(session), m_report(report), m_table(shown.table), m_look(look), m_families(shown) {}

  std::vector<page::Item> Plots() {
    if (!m_families.HasAbscissa() || m_look.display == ReportDisplay::kTable || !HasAbscissaNumbers())
      return {};
    for (std::size_t i = 0; i < m_table.Columns().size(); ++i)
      if (m_table.Columns()[i].role == Role::kY && !m_families.IsNumber(i) && !m_families.IsEmpty(i))
        Add(i);
    return Titled();
  }

private:
  bool HasAbscissaNumbers() const {
    return std::any_of(m_families.Curves().begin(), m_families.Curves().end(), [](auto const & curve) {
      return std::any_of(curve.x.begin(), curve.x.end(), [](double x) { return !std::isnan(x); });
    });
  }

  ReportDisplay DisplayOf(Column const & column) const {
    ReportDisplay const display = m_look.display.value_or(m_report.display);
    if (!column.isComplex)
      return ReportDisplay::kRectangular;
    if (display != ReportDisplay::kTable)
      return display;
    return PortOfReflection(column.title) ? ReportDisplay::kSmith : ReportDisplay::kPolar;
  }

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

  // Plots are told apart by what they show.
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
  CurveFamilies m_families;
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

} // namespace

std::vector<page::Item> PlotsOf(Session & session, ReportDefinition const & report, LiveReports::Shown const & shown,
                                Look const & look) {
  return Drawing(session, report, shown, look).Plots();
}

page::Numbers NumbersOf(ReportDefinition const & report, LiveReports::Shown const & shown, Look const & look) {
  page::Numbers numbers{report.name + L": numbers", {}};
  ReportTable const & table = shown.table;
  CurveFamilies const families(shown);
  for (std::size_t column = 0; column < table.Columns().size(); ++column) {
    if (table.Columns()[column].role != Role::kY || (families.HasAbscissa() && !families.IsNumber(column)))
      continue;
    for (Part const & part : PartsOf(table, column, look))
      for (CurveFamilies::Curve const & curve : families.Curves()) {
        auto const value = table.At(curve.rows.front(), column);
        numbers.entries.push_back({part.title, curve.variation, value ? part.Of(*value) : kMissing, part.unit,
                                   value ? AString() : AString(L"there is none here")});
      }
  }
  return numbers;
}

page::Table TableOf(ReportDefinition const & report, LiveReports::Shown const & shown, Look const & look) {
  page::Table table{report.name, {}};
  for (std::size_t column = 0; column < shown.table.Columns().size(); ++column)
    for (Part const & part : PartsOf(shown.table, column, look))
      table.columns.push_back(CellsOf(shown.table, part));
  return table;
}

} // namespace desktop::pageview
