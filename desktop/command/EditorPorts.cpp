// Edits of what ports are shown with.
#include "basekit/text/NumberText.h"
#include "desktop/Error.h"
#include "desktop/command/Edit.h"
#include "desktop/command/WordOfCommand.h"
#include "desktop/message/NameList.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/IPortProduct.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"

#include <cmath>

namespace desktop {

namespace {

using Port = IPortProduct::Port;

AString Ohms(double impedance) { return text::FromUtf8(text::ShortestReal(impedance)); }

AString ShownText(Port const & port) {
  return port.shown ? Ohms(*port.shown) + L" ohm" : Ohms(port.solved) + L" ohm, as solved";
}

// By name, or by number as in S(2,1).
Port & FindPort(std::vector<Port> & ports, AString const & word) {
  std::vector<AString> known;
  for (Port & port : ports) {
    if (AString::MatchNoCase(port.name, word))
      return port;
    known.push_back(port.name);
  }
  for (std::size_t i = 0; i < ports.size(); ++i)
    if (AString::Format(L"%ld", static_cast<long>(i + 1)) == word)
      return ports[i];
  throw Error(ErrorKind::kUsage, ShortName(word) + L": no port of that name or number is solved; there are: " +
                                     (known.empty() ? AString(L"none, as nothing is solved") : NameList(known, word)));
}

// Beyond these no digit of what is shown tells anything of the network.
constexpr double kLeast = 1e-9;
constexpr double kMost = 1e12;

void RefuseSenselessImpedance(AString const & word, double impedance) {
  if (!(std::isfinite(impedance) && impedance > 0.0))
    throw Error(ErrorKind::kUsage,
                ShortName(word) + L": an impedance is a number of ohms above zero; give one such as 75");
  if (impedance < kLeast || impedance > kMost)
    throw Error(ErrorKind::kUsage, ShortName(word) + L": " + Ohms(impedance) +
                                       L" ohm is no impedance that results can be told with; give one from " +
                                       Ohms(kLeast) + L" to " + Ohms(kMost));
}

} // namespace

bool Editor::ShowPorts(std::vector<std::pair<AString, std::optional<double>>> const & impedances) {
  auto const * const product = dynamic_cast<IPortProduct const *>(&m_session.GetProduct());
  if (!product)
    throw Error(ErrorKind::kUsage, m_session.GetProduct().GetName() + L": this product has no ports; use a project of "
                                                                      L"another one");
  std::vector<Port> const former = product->GetPorts(m_session.GetManager());
  std::vector<Port> ports = former;
  AString command = L"port";
  for (auto const & [name, impedance] : impedances) {
    Port & port = FindPort(ports, name);
    if (impedance)
      RefuseSenselessImpedance(name, *impedance);
    port.shown = impedance && *impedance != port.solved ? impedance : std::nullopt;
    command += AString(L" ") + WordOfCommand(port.name + L"=" + (impedance ? Ohms(*impedance) : AString(L"solved")));
  }
  return Run(command, [&](Edit & edit) {
    product->ShowPorts(m_session.GetManager(), ports, *edit.command);
    for (std::size_t i = 0; i < ports.size(); ++i)
      if (ports[i].shown != former[i].shown)
        edit.Tell(AString(L"impedance of port ") + ports[i].name, ShownText(former[i]), ShownText(ports[i]));
  });
}

} // namespace desktop
