// Numbers of a JSON document, by pointers.

#include "products/command/output/OutputText.h"
#include "products/command/output/TakenValues.h"
#include "products/command/source/SolverFile.h"
#include "products/command/source/SourceError.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace command {
namespace {

using Json = nlohmann::json;

class JsonReader {
public:
  JsonReader(OutputLine const & output, QuantityLine const & quantity) : m_output(output), m_quantity(quantity) {}

  std::vector<double> Read(Json const & document) {
    Collect(document, m_quantity.where);
    return std::move(m_values);
  }

private:
  // A part '*' stands for all elements of a list.
  void Collect(Json const & value, std::string const & pointer) {
    std::size_t const star = pointer.find("/*");
    bool const isStar = star != std::string::npos && (star + 2 == pointer.size() || pointer[star + 2] == '/');
    Json const & found = At(value, isStar ? pointer.substr(0, star) : pointer);
    if (!isStar)
      return Take(found);
    if (!found.is_array())
      Refuse("'" + pointer.substr(0, star) + "' is no list");
    for (Json const & element : found)
      Collect(element, pointer.substr(star + 2));
  }

  Json const & At(Json const & value, std::string const & pointer) const {
    try {
      return value.at(Json::json_pointer(pointer));
    } catch (Json::exception const &) {
      RefuseAt(value, pointer);
    }
  }

  // Lists what is there as far as the pointer leads.
  [[noreturn]] void RefuseAt(Json const & value, std::string const & pointer) const {
    Json const * deepest = &value;
    std::string reached;
    try {
      for (std::size_t slash = pointer.find('/', 1); slash != std::string::npos; slash = pointer.find('/', slash + 1)) {
        deepest = &value.at(Json::json_pointer(pointer.substr(0, slash)));
        reached = pointer.substr(0, slash);
      }
    } catch (Json::exception const &) {
      // Here the way ends.
    }
    std::string known;
    if (deepest->is_object())
      for (auto const & [key, ignored] : deepest->items())
        known += (known.empty() ? "" : ", ") + key;
    Refuse("there is nothing at '" + pointer + "'" +
           (known.empty() ? "" : "; in " + (reached.empty() ? "it" : reached) + " there are " + known.substr(0, 100)));
  }

  void Take(Json const & value) {
    if (value.is_array()) {
      for (Json const & element : value)
        TakeNumber(element);
      return;
    }
    TakeNumber(value);
  }

  void TakeNumber(Json const & value) {
    if (!value.is_number())
      Refuse("'" + value.dump(-1, ' ', false, Json::error_handler_t::replace).substr(0, 40) + "' is no number");
    double const number = value.get<double>();
    if (!std::isfinite(number))
      Refuse("a number is not finite");
    if (m_values.size() == kMostNumbers)
      Refuse("there are more than " + std::to_string(kMostNumbers) + " values; write fewer");
    m_values.push_back(number);
  }

  [[noreturn]] void Refuse(std::string const & problem) const {
    throw SourceError(m_output.Name() + ": " + m_quantity.name + ": " + problem);
  }

  OutputLine const & m_output;
  QuantityLine const & m_quantity;
  std::vector<double> m_values;
};

Json Parse(OutputLine const & output, std::string const & text) {
  try {
    return Json::parse(text);
  } catch (Json::parse_error const & error) {
    std::string const size = std::to_string(text.size());
    throw SourceError(output.Name() + ": is no JSON document: " +
                      (error.byte > text.size() ? "it ends too early, after byte " + size + "; the file may be cut"
                                                : "it makes no sense at byte " + std::to_string(error.byte) + " of " +
                                                      size + " (NaN and infinities are no JSON)"));
  } catch (Json::exception const &) {
    throw SourceError(output.Name() + ": is no JSON document: a number is beyond what can be held");
  }
}

} // namespace

std::vector<desktop::QuantityValues> ReadJsonText(OutputLine const & output, std::string const & text) {
  Json const document = Parse(output, text);
  std::vector<desktop::QuantityValues> taken;
  for (QuantityLine const & quantity : output.quantities)
    taken.push_back(TakeValues(output, quantity, JsonReader(output, quantity).Read(document)));
  return taken;
}

} // namespace command
