#include "apps/qsol/NumberTable.h"

#include "apps/qsol/NumberRule.h"
#include "apps/qsol/Text.h"
#include "basekit/io/CBlock.h"
#include "basekit/text/NumberText.h"

#include <algorithm>
#include <map>
#include <vector>

namespace qsol {

namespace {

using Kind = io::CBlock_item::Kind;
using Type = io::CBlock_value::Type;

constexpr wchar_t const * kName = L"Name";

std::string Quoted(std::string const & text) {
  if (text.find_first_of(",\"\r\n") == text.npos)
    return text;
  std::string quoted = "\"";
  for (char const c : text)
    quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

// A program that reads columns takes a number by its value, whatever type it was stored as.
std::string CellOf(io::CBlock_value const & value) {
  double real = 0.0;
  if (value.ValueType() == Type::Real && value.Query(real))
    return text::ShortestReal(real);
  return Quoted(Utf8(value.Token().Text()));
}

struct Column {
  std::string title;
  std::vector<std::string> cells;
};

// What an item says it is called; empty when it doesn't.
AString LabelOf(io::CBlock_item const & item) {
  io::CBlock_named_value const * named = nullptr;
  if (item.ItemKind() == Kind::Block)
    named = static_cast<io::CBlock_named_value const *>(
        static_cast<io::CBlock const &>(item).FindItem(kName, Kind::NamedValue));
  else if (item.ItemKind() == Kind::Func)
    named = static_cast<io::CBlock_func const &>(item).FindArgument(kName);
  AString label;
  if (named && named->Value().ValueType() == Type::Text)
    named->Value().Query(label);
  return label;
}

class Table {
public:
  void Take(io::CBlock const & block, std::string const & path) {
    std::map<AString, int> counts;
    std::map<std::pair<AString, AString>, int> labels;
    for (auto const & item : block) {
      ++counts[item->Name()];
      ++labels[{item->Name(), LabelOf(*item)}];
    }
    std::map<AString, int> met;
    for (auto const & item : block) {
      AString const name = item->Name();
      AString const label = LabelOf(*item);
      int const number = ++met[name];
      std::string step = path + Utf8(name);
      if (!label.empty() && labels[{name, label}] == 1)
        step += "(" + Utf8(label) + ")";
      else if (counts[name] > 1)
        step += "[" + std::to_string(number) + "]";
      Take(*item, step);
    }
  }

  std::string Csv() const {
    std::size_t rows = 0;
    std::string csv;
    for (Column const & column : m_columns) {
      csv += (&column == &m_columns.front() ? "" : ",") + Quoted(column.title);
      rows = std::max(rows, column.cells.size());
    }
    for (std::size_t row = 0; row < rows; ++row)
      for (Column const & column : m_columns) {
        csv += &column == &m_columns.front() ? '\n' : ',';
        if (row < column.cells.size())
          csv += column.cells[row];
      }
    return rows == 0 ? std::string() : csv + "\n";
  }

private:
  void Take(io::CBlock_item const & item, std::string const & step) {
    switch (item.ItemKind()) {
    case Kind::Block:
      return Take(static_cast<io::CBlock const &>(item), step + "/");
    case Kind::NamedValue:
      return TakeSingle(static_cast<io::CBlock_named_value const &>(item).Value(), step);
    case Kind::Func:
      return TakeList(static_cast<io::CBlock_func const &>(item), step);
    case Kind::Vec:
      return TakeList(static_cast<io::CBlock_vec const &>(item).Values(), step);
    case Kind::Value:
      return TakeSingle(static_cast<io::CBlock_value const &>(item), step);
    }
  }

  void TakeSingle(io::CBlock_value const & value, std::string const & step) {
    if (IsNumber(value))
      m_columns.push_back({step, {CellOf(value)}});
  }

  void TakeList(io::CBlock_func_arg const & arguments, std::string const & step) {
    Column column{step, {}};
    bool hasNumber = false;
    std::vector<Column> named;
    for (auto at = arguments.begin(); at != arguments.end(); ++at) {
      io::CBlock_value const value = at.Value();
      if (!at.IsNamed()) {
        column.cells.push_back(CellOf(value));
        hasNumber = hasNumber || IsNumber(value);
      } else if (IsNumber(value)) {
        named.push_back({step + "/" + Utf8((*at)->Name()), {CellOf(value)}});
      }
    }
    if (hasNumber)
      m_columns.push_back(std::move(column));
    for (Column & each : named)
      m_columns.push_back(std::move(each));
  }

  std::vector<Column> m_columns;
};

} // namespace

std::string NumbersAsCsv(io::CBlock const & block) {
  Table table;
  table.Take(block, {});
  return table.Csv();
}

} // namespace qsol
