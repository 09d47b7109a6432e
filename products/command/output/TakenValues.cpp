#include "products/command/output/TakenValues.h"

#include "basekit/text/Utf8.h"
#include "products/command/output/OutputText.h"
#include "products/command/source/SolverFile.h"
#include "products/command/source/SourceError.h"

namespace command {

desktop::QuantityValues TakeValues(OutputLine const & output, QuantityLine const & quantity,
                                   std::vector<double> values) {
  using Kind = QuantityLine::Kind;
  auto const refuse = [&](std::string const & problem) {
    throw SourceError(output.Name() + ": " + quantity.name + ": " + problem);
  };
  if (values.empty())
    refuse("there is no value; see why the program wrote none");
  if (quantity.kind == Kind::kOnly && values.size() > 1)
    refuse("there are " + std::to_string(values.size()) +
           " values where one is meant; write 'first', 'last', or a column line");
  desktop::QuantityValues taken;
  taken.name = text::FromUtf8(quantity.name);
  taken.unit = text::FromUtf8(quantity.unit);
  taken.over = text::FromUtf8(quantity.over);
  taken.isScalar = quantity.kind != Kind::kColumn;
  if (taken.isScalar)
    taken.values = {quantity.kind == Kind::kLast ? values.back() : values.front()};
  else
    taken.values = std::move(values);
  return taken;
}

std::vector<desktop::QuantityValues> ReadOutputText(OutputLine const & output, std::string const & text) {
  return output.form == OutputLine::Form::kJson ? ReadJsonText(output, text) : ReadTableText(output, text);
}

} // namespace command
