#include "desktop/pageview/Reference.h"

#include "basekit/text/NumberText.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/IPortProduct.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"

#include <algorithm>

namespace desktop::pageview {

namespace {

double Shown(IPortProduct::Port const & port) { return port.shown.value_or(port.solved); }

} // namespace

std::optional<AString> PortOfReflection(AString const & expression) {
  std::wstring text(expression.View());
  std::erase_if(text, [](wchar_t character) { return character == L' ' || character == L'\t'; });
  if (text.size() < 6 || (text[0] != L'S' && text[0] != L's') || text[1] != L'(' || text.back() != L')')
    return {};
  std::wstring const inner = text.substr(2, text.size() - 3);
  std::size_t const comma = inner.find(L',');
  if (comma == std::wstring::npos || inner.find_first_of(L"(),", comma + 1) != std::wstring::npos)
    return {};
  AString const port(inner.substr(0, comma));
  return !port.empty() && AString::MatchNoCase(port, AString(inner.substr(comma + 1))) ? std::optional(port)
                                                                                       : std::nullopt;
}

std::optional<double> ReferenceOf(Session & session, AString const & expression) {
  auto const * const product = dynamic_cast<IPortProduct const *>(&session.GetProduct());
  auto const ports = product ? product->GetPorts(session.GetManager()) : std::vector<IPortProduct::Port>();
  if (ports.empty())
    return {};
  if (auto const name = PortOfReflection(expression)) {
    double number = 0.0;
    if (text::ParseReal(name->View(), number) && number >= 1.0 && number <= static_cast<double>(ports.size()))
      return Shown(ports[static_cast<std::size_t>(number) - 1]);
    auto const at = std::find_if(ports.begin(), ports.end(),
                                 [&](auto const & port) { return AString::MatchNoCase(port.name, *name); });
    if (at != ports.end())
      return Shown(*at);
  }
  bool const isOne =
      std::all_of(ports.begin(), ports.end(), [&](auto const & port) { return Shown(port) == Shown(ports.front()); });
  return isOne ? std::optional(Shown(ports.front())) : std::nullopt;
}

} // namespace desktop::pageview
