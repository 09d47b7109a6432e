// Expressions: whatever is read prints back to itself, compiles or is refused with a place in its text, and runs, over
// traces of ordinary and of the greatest numbers.

#include "fuzz/Entry.h"

#include "basekit/text/Utf8.h"
#include "basekit/value/expression/NamedScope.h"
#include "basekit/value/expression/SyntaxParser.h"

#include <cmath>
#include <cstdlib>
#include <string_view>

namespace {

void Demand(bool holds) {
  if (!holds)
    std::abort();
}

bool AreSame(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

void DemandSame(expr::SyntaxTree const & tree, expr::SyntaxTree const & again) {
  Demand(again.nodes.size() == tree.nodes.size() && again.numbers.size() == tree.numbers.size());
  Demand(again.names == tree.names);
  for (std::size_t i = 0; i < tree.nodes.size(); ++i) {
    expr::Node const & a = tree.nodes[i];
    expr::Node const & b = again.nodes[i];
    Demand(a.kind == b.kind && a.op == b.op && a.argumentCount == b.argumentCount && a.first == b.first);
  }
  for (std::size_t i = 0; i < tree.numbers.size(); ++i) {
    val::Quantity const & a = tree.numbers[i];
    val::Quantity const & b = again.numbers[i];
    Demand(AreSame(a.real, b.real) && AreSame(a.imaginary, b.imaginary));
    Demand(a.isComplex == b.isComplex && a.unit == b.unit);
  }
}

void CheckPrinting(AString const & text) {
  expr::SyntaxTree tree;
  expr::Error error;
  expr::NamesIn(text);
  if (!expr::ReadSyntax(text, tree, error)) {
    Demand(error.position + error.length <= text.size() && !error.problem.empty());
    return;
  }
  AString const printed = tree.Print();
  expr::SyntaxTree again;
  Demand(expr::ReadSyntax(printed, again, error) && again.Print() == printed);
  DemandSame(tree, again);
}

void CheckRun(expr::NamedScope const & scope, AString const & text) {
  expr::Result result;
  expr::Error error;
  bool const isDone = scope.Evaluate(text, result, error);
  Demand(isDone || error.position + error.length <= error.source.size());
  Demand(!isDone || (result.isComplex ? result.complexes.size() : result.reals.size()) == (result.isScalar ? 1u : 5u));
}

void CheckRuns(AString const & text) {
  double const axis[] = {1.0, 2.0, 2.0, 5.0, NAN};
  double const reals[] = {0.0, -1.0, 3.0, INFINITY, 2.0};
  std::complex<double> const complexes[] = {{1.0, 2.0}, {0.0, 0.0}, {NAN, 1.0}, {-3.0, 0.5}, {1e300, -1e300}};
  expr::NamedScope scope;
  scope.SetAxis(axis);
  scope.AddColumn(L"y", reals);
  scope.AddColumn(L"S(2,1)", complexes);
  scope.AddColumn(L"S21", complexes);
  scope.AddNumber(L"x", 3.0);
  scope.AddDefinition(L"w", L"2*h + y");
  scope.AddDefinition(L"h", L"max(mag(S21))");
  scope.AddDefinition(L"self", text);
  scope.AddDataset(L"d", {axis, reals});
  CheckRun(scope, text);

  double const greatAxis[] = {-1.5e308, -1.0, 5e-324, 1.0, 1.5e308};
  double const greatReals[] = {0.0, 1.5e308, -1.5e308, 5e-324, 1.0};
  scope.SetAxis(greatAxis);
  scope.AddColumn(L"y", greatReals);
  CheckRun(scope, text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
  AString const text = text::FromUtf8(std::string_view(reinterpret_cast<char const *>(data), size));
  CheckPrinting(text);
  CheckRuns(text);
  return 0;
}
