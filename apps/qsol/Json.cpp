#include "apps/qsol/Json.h"

#include "apps/qsol/Catalogue.h"
#include "apps/qsol/OpenLibrary.h"
#include "apps/qsol/Text.h"
#include "basekit/io/CBlock.h"

#include <cmath>
#include <ostream>

namespace qsol {

Json NumberOf(double value) {
  if (std::isfinite(value))
    return value;
  return Json{{"number", std::isnan(value) ? "nan" : value < 0 ? "-inf" : "inf"}};
}

namespace {

Json ValueOf(io::CBlock_value const & value) {
  using Type = io::CBlock_value::Type;
  bool truth = false;
  long whole = 0;
  double real = 0;
  AString text;
  switch (value.ValueType()) {
  case Type::None:
    return nullptr;
  case Type::Text:
    value.Query(text);
    return Utf8(text);
  case Type::Bool:
    value.Query(truth);
    return truth;
  case Type::Integer:
    value.Query(whole);
    return whole;
  case Type::Real:
    value.Query(real);
    return NumberOf(real);
  }
  return nullptr;
}

Json ArgumentsOf(io::CBlock_func_arg const & arguments) {
  Json list = Json::array();
  for (auto at = arguments.begin(); at != arguments.end(); ++at) {
    Json const value = ValueOf(at.Value());
    list.push_back(at.IsNamed() ? Json{{"name", Utf8((*at)->Name())}, {"value", value}} : value);
  }
  return list;
}

} // namespace

Json ItemOf(io::CBlock_item const & item) {
  if (auto const * const value = dynamic_cast<io::CBlock_value const *>(&item))
    return ValueOf(*value);
  Json json{{"name", Utf8(item.Name())}};
  if (auto const * const block = dynamic_cast<io::CBlock const *>(&item))
    json["items"] = ItemsOf(*block);
  else if (auto const * const func = dynamic_cast<io::CBlock_func const *>(&item))
    json["arguments"] = ArgumentsOf(*func);
  else if (auto const * const vec = dynamic_cast<io::CBlock_vec const *>(&item))
    json["values"] = ArgumentsOf(vec->Values());
  else if (auto const * const named = dynamic_cast<io::CBlock_named_value const *>(&item))
    json["value"] = ValueOf(named->Value());
  return json;
}

Json ItemsOf(io::CBlock const & block) {
  Json items = Json::array();
  for (auto const & child : block)
    items.push_back(ItemOf(*child));
  return items;
}

Json DocumentHead(OpenedLibrary const & opened) {
  return {{"schema_version", kSchemaVersion},
          {"file", Utf8(opened.publicPath)},
          {"shown", opened.Shown()},
          {"notices", opened.notices}};
}

Json ToJson(Block const & block, OpenedLibrary const & opened) {
  Json json{{"name", Utf8(block.entry.name)},
            {"real_name", block.realName.empty() ? Json() : Json(Utf8(block.realName))},
            {"kind", NameOf(block.kind)}};
  if (block.key) {
    json["setup"] = block.key->GetSimSetupKey();
    json["solution"] = block.key->GetSolutionKey();
    json["version"] = block.key->GetVersionIDKey();
    json["variation"] = block.kind == Kind::Definition ? Json() : Json(Utf8(block.Variation()));
  }
  json["bytes"] = block.entry.length;
  json["form"] = block.entry.isBinary ? "binary" : "text";
  json["where"] = block.entry.isPrivate ? "private" : "public";
  json["file"] = Utf8(opened.PathOf(block.entry.isPrivate));
  json["offset"] = block.entry.offset;
  return json;
}

JsonListing::JsonListing(std::ostream & out, Json const & head, std::string const & list) : m_out(out) {
  std::string text = head.dump(2);
  text.resize(text.size() - 2); // The closing brace on its line.
  m_out << text << ",\n  \"" << list << "\": [";
}

void JsonListing::Add(Json const & element) {
  m_out << (m_isFirst ? "\n    " : ",\n    ") << element.dump();
  m_isFirst = false;
}

void JsonListing::Finish(Json const & behind) {
  m_out << (m_isFirst ? "]" : "\n  ]");
  for (auto const & [name, value] : behind.items())
    m_out << ",\n  " << Json(name).dump() << ": " << value.dump();
  m_out << "\n}\n";
}

} // namespace qsol
