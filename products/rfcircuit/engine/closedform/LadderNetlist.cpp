#include "products/rfcircuit/engine/closedform/LadderNetlist.h"

#include <fmt/format.h>

namespace rf {
namespace {

using Kind = LadderElement::Kind;

char LetterOf(Kind kind) {
  switch (kind) {
  case Kind::SeriesResistor:
  case Kind::ShuntResistor:
    return 'R';
  case Kind::SeriesInductor:
  case Kind::ShuntInductor:
    return 'L';
  default:
    return 'C';
  }
}

bool IsShunt(Kind kind) {
  return kind == Kind::ShuntResistor || kind == Kind::ShuntInductor || kind == Kind::ShuntCapacitor;
}

} // namespace

std::string LadderNetlist(std::vector<LadderElement> const & ladder, double sourceZ0, double loadZ0) {
  std::string lines = fmt::format("V1 n0 0 dc 0 ac 1 portnum 1 z0 {}\n", sourceZ0);
  int node = 0;
  for (std::size_t i = 0; i < ladder.size(); ++i) {
    LadderElement const & element = ladder[i];
    lines += fmt::format("{}{} n{} ", LetterOf(element.kind), i + 1, node);
    lines += IsShunt(element.kind) ? std::string("0") : fmt::format("n{}", ++node);
    lines += fmt::format(" {}\n", element.value);
  }
  return lines + fmt::format("V2 n{} 0 dc 0 ac 0 portnum 2 z0 {}\n", node, loadZ0);
}

} // namespace rf
