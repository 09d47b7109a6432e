// What a circuit hands to other designs and takes from them: solved networks, as Touchstone files.
#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/VariableValues.h"
#include "desktop/product/TransferredNetwork.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneReader.h"
#include "products/rfcircuit/product/RfManager.h"
#include "products/rfcircuit/product/RfVariation.h"
#include "products/rfcircuit/product/TouchstoneExport.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

namespace rfcircuit {
namespace {

using desktop::TransferredNetwork;

constexpr int kEveryBit = 17;

bool IsNetwork(AString const & transferType) { return transferType == TransferredNetwork::kTransferType; }

/// A solved and valid point; the solution is null without one.
struct Point {
  BaseSolution * solution = nullptr;
  VariationIDIndex const * index = nullptr; ///< of the solution's
};

Point FindPoint(BaseSimulationSetup const & setup, AString const & variation) {
  for (auto const & [id, solution] : setup.GetSolutions())
    for (auto const & [index, solved] : solution->GetVariations()) {
      AString const text = solved->GetDesignVariationKey();
      if (solved->IsVariationValid() && VariableValues::AreVariationKeysEqual(text, variation) &&
          solution->HasSolutionData(text, solved->GetVersionID()))
        return {solution, &index};
    }
  return {};
}

bool MakeNetwork(Point const & point, TransferredNetwork & network, AString & error) {
  auto * const variation = dynamic_cast<RfVariation *>(point.solution->GetVariationData(*point.index, false));
  if (!variation || !variation->HasSolutionData()) {
    error = L"its data can't be read (`qsol verify` tells what is wrong); solve it anew";
    return false;
  }
  NetworkData const & data = variation->GetData();
  network.ports = static_cast<long>(data.Ports().size());
  network.extension = TouchstoneExtension(data);
  std::string text;
  bool const isMade = MakeTouchstoneText(
      data, {point.solution->GetGlobalSolutionName(), variation->GetDesignVariationKey(), kEveryBit}, text, error);
  network.text = text::FromUtf8(text);
  variation->ClearInstanceMemoryData();
  return isMade;
}

bool IsReadable(TransferredNetwork const & network, AString const & name, AString & error) {
  try {
    auto const read = rf::ReadTouchstoneText(text::ToUtf8(network.text), text::ToUtf8(name + network.extension));
    if (static_cast<long>(read.network.Ports()) == network.ports)
      return true;
    error = AString::Format(L"it is told to have %d ports, and its data has %d", network.ports,
                            static_cast<long>(read.network.Ports()));
  } catch (rf::TouchstoneError const & refused) {
    error = text::FromUtf8(refused.what());
  }
  return false;
}

/// The network that comes in, as far as this circuit can take it.
bool TakeNetwork(AString const & consumer, io::CBlock const & in, TransferredNetwork & network, io::CBlock & out) {
  AString error = L"there is no network in what was handed over";
  if (network.Read(in) && IsReadable(network, consumer, error))
    return true;
  desktop::WriteRefusal(out, error);
  return false;
}

} // namespace

bool RfManager::RetrieveTransferData(AString const & provider, AString const &, IDesignInstance * instance,
                                     AString const & transferType, io::CBlock const &, io::CBlock & out,
                                     bool & flag) const {
  flag = false;
  if (!IsNetwork(transferType) || !instance)
    return false;
  AString error;
  TransferredNetwork network;
  auto const * const setup =
      dynamic_cast<BaseSimulationSetup const *>(ForEdit().GetISimulationSetup(provider, false, false));
  Point const point = setup ? FindPoint(*setup, instance->GetVariationKey()) : Point();
  if (!setup)
    error = AString(L"it has no setup '") + provider + L"'; `info` lists them";
  else if (!point.solution)
    error = AString(L"setup '") + provider + L"' is not solved and valid at '" + instance->GetVariationKey() +
            L"'; solve it there, or name a variation that is (`info` lists them)";
  else
    flag = MakeNetwork(point, network, error);
  if (flag)
    network.Write(out);
  else
    desktop::WriteRefusal(out, error);
  return true;
}

bool RfManager::OnAcquireTransferDataConnection(AString const & consumer, IDesignInstance *,
                                                AString const & transferType, io::CBlock const & in, io::CBlock & out,
                                                bool & flag) {
  flag = false;
  if (!IsNetwork(transferType))
    return false;
  TransferredNetwork network;
  flag = TakeNetwork(consumer, in, network, out);
  if (flag)
    desktop::WriteTransferFile(out, consumer + network.extension);
  return true;
}

// The circuit's lines have as many nodes as the network had ports.
bool RfManager::OnRefreshTransferData(AString const &, AString const & consumer, IDesignInstance *,
                                      AString const & transferType, io::CBlock const & in, io::CBlock & out,
                                      bool & flag) {
  flag = false;
  if (!IsNetwork(transferType))
    return false;
  TransferredNetwork network;
  if (!TakeNetwork(consumer, in, network, out))
    return true;
  AString const former = desktop::TransferFileOf(in);
  flag = former.EndsWith(network.extension);
  if (flag)
    desktop::WriteTransferFile(out, former);
  else
    desktop::WriteRefusal(out,
                          AString::Format(L"it has %d %s now, which '%s' can't hold; disconnect, and connect anew",
                                          network.ports, AString(network.ports == 1 ? L"port" : L"ports"), former));
  return true;
}

bool RfManager::OnReleaseTransferDataConnection(AString const &, IDesignInstance *, AString const & transferType,
                                                io::CBlock const &, io::CBlock &, bool & flag) {
  flag = IsNetwork(transferType);
  return flag;
}

} // namespace rfcircuit
