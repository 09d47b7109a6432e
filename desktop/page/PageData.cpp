#include "desktop/page/PageData.h"

#include "basekit/text/Utf8.h"
#include "desktop/page/Composition.h"
#include "desktop/page/NumberColumns.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace desktop::page {
namespace {

using Json = nlohmann::ordered_json;

/// Turns items into descriptions.  What is empty is left out, as most texts are.
class Describer {
public:
  explicit Describer(NumberColumns & columns) : m_columns(columns) {}

  void Add(Json & items, RectangularPlot const & plot);
  void Add(Json & items, PolarPlot const & plot);
  void Add(Json & items, SmithChart const & chart);
  void Add(Json & items, Table const & table);
  void Add(Json & items, Tree const & tree);
  void Add(Json & items, Convergence const & convergence);
  void Add(Json & items, Profile const & profile) { Add(items, Composed(profile)); }
  void Add(Json & items, Numbers const & numbers) { Add(items, Composed(numbers)); }

private:
  static Json Node(Tree::Node const & node);
  Json Described(Series const & series);
  Json Described(ComplexSeries const & series);

  NumberColumns & m_columns;
};

void Put(Json & json, char const * key, AString const & text) {
  if (!text.empty())
    json[key] = text::ToUtf8(text);
}

Json Described(PlotAxis const & axis) {
  Json json = Json::object();
  Put(json, "title", axis.title);
  Put(json, "unit", axis.unit);
  if (axis.isLogarithmic)
    json["log"] = true;
  return json;
}

Json NewItem(char const * kind, AString const & title) { return Json{{"kind", kind}, {"title", text::ToUtf8(title)}}; }

std::vector<double> FirstOf(std::vector<double> const & numbers, std::size_t count) {
  return {numbers.begin(), numbers.begin() + static_cast<std::ptrdiff_t>(std::min(count, numbers.size()))};
}

char const * WordOf(Tree::State state) {
  switch (state) {
  case Tree::State::kValid:
    return "valid";
  case Tree::State::kStale:
    return "stale";
  case Tree::State::kFormer:
    return "former";
  case Tree::State::kFailed:
    return "failed";
  case Tree::State::kRunning:
    return "running";
  case Tree::State::kNone:
    break;
  }
  return nullptr;
}

Json Describer::Described(Series const & series) {
  std::size_t const count = std::min(series.x.size(), series.y.size());
  Json json{{"name", text::ToUtf8(series.name)}};
  Put(json, "variation", series.variation);
  json["x"] = series.x.size() == count ? m_columns.Add(series.x) : m_columns.Add(FirstOf(series.x, count));
  json["y"] = series.y.size() == count ? m_columns.Add(series.y) : m_columns.Add(FirstOf(series.y, count));
  return json;
}

Json Describer::Described(ComplexSeries const & series) {
  std::size_t const count = series.values.size();
  std::vector<double> parameter = FirstOf(series.parameter, count), re(count), im(count);
  parameter.resize(count, std::numeric_limits<double>::quiet_NaN());
  std::ranges::transform(series.values, re.begin(), [](std::complex<double> value) { return value.real(); });
  std::ranges::transform(series.values, im.begin(), [](std::complex<double> value) { return value.imag(); });
  Json json{{"name", text::ToUtf8(series.name)}};
  Put(json, "variation", series.variation);
  json["x"] = m_columns.Add(parameter);
  json["re"] = m_columns.Add(re);
  json["im"] = m_columns.Add(im);
  return json;
}

void Describer::Add(Json & items, RectangularPlot const & plot) {
  Json item = NewItem("rectangular", plot.title);
  item["x"] = page::Described(plot.x);
  item["y"] = page::Described(plot.y);
  Json & series = item["series"] = Json::array();
  for (Series const & one : plot.series)
    series.push_back(Described(one));
  for (Level const & level : plot.levels)
    if (std::isfinite(level.y))
      item["lines"].push_back({{"y", level.y}, {"label", text::ToUtf8(level.label)}});
  items.push_back(std::move(item));
}

void Describer::Add(Json & items, PolarPlot const & plot) {
  Json item = NewItem("polar", plot.title);
  Put(item, "unit", plot.unit);
  item["parameter"] = page::Described(plot.parameter);
  Json & series = item["series"] = Json::array();
  for (ComplexSeries const & one : plot.series)
    series.push_back(Described(one));
  items.push_back(std::move(item));
}

void Describer::Add(Json & items, SmithChart const & chart) {
  Json item = NewItem("smith", chart.title);
  if (chart.impedance)
    item["impedance"] = *chart.impedance;
  item["parameter"] = page::Described(chart.parameter);
  Json & series = item["series"] = Json::array();
  for (ComplexSeries const & one : chart.series)
    series.push_back(Described(one));
  items.push_back(std::move(item));
}

void Describer::Add(Json & items, Table const & table) {
  Json item = NewItem("table", table.title);
  Json & columns = item["columns"] = Json::array();
  for (Table::Column const & column : table.columns) {
    Json json{{"title", text::ToUtf8(column.title)}};
    Put(json, "unit", column.unit);
    if (auto const * numbers = std::get_if<std::vector<double>>(&column.cells)) {
      json["numbers"] = m_columns.Add(*numbers);
    } else {
      Json & texts = json["texts"] = Json::array();
      for (AString const & text : std::get<std::vector<AString>>(column.cells))
        texts.push_back(text::ToUtf8(text));
    }
    if (column.hasBars)
      json["bars"] = true;
    columns.push_back(std::move(json));
  }
  items.push_back(std::move(item));
}

Json Describer::Node(Tree::Node const & node) {
  Json json{{"label", text::ToUtf8(node.label)}};
  Put(json, "detail", node.detail);
  if (char const * const word = WordOf(node.state))
    json["state"] = word;
  Put(json, "reason", node.reason);
  Put(json, "remedy", node.remedy);
  for (Tree::Node const & child : node.children)
    json["children"].push_back(Node(child));
  return json;
}

void Describer::Add(Json & items, Tree const & tree) {
  Json item = NewItem("tree", tree.title);
  Json & nodes = item["nodes"] = Json::array();
  for (Tree::Node const & node : tree.nodes)
    nodes.push_back(Node(node));
  items.push_back(std::move(item));
}

void Describer::Add(Json & items, Convergence const & convergence) {
  for (Item const & item : Composed(convergence))
    std::visit([&](auto const & one) { Add(items, one); }, item);
}

} // namespace

Json PageData(Document const & document, NumberColumns & columns) {
  Describer describer(columns);
  Json sections = Json::array();
  for (Section const & section : document.sections) {
    Json json = Json::object();
    Put(json, "title", section.title);
    Put(json, "text", section.text);
    Json & items = json["items"] = Json::array();
    for (Item const & item : section.items)
      std::visit([&](auto const & one) { describer.Add(items, one); }, item);
    sections.push_back(std::move(json));
  }
  return Json{{"sections", std::move(sections)}, {"columns", columns.Spans()}};
}

} // namespace desktop::page
