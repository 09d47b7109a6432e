#include "tests/desktop/hub/TransferProduct.h"

#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/TransferredNetwork.h"

#include <fstream>
#include <sstream>

namespace support {

using desktop::TransferredNetwork;

std::vector<AString> TransferManager::calls;

bool TransferManager::RetrieveTransferData(AString const & provider, AString const &, IDesignInstance * instance,
                                           AString const & transferType, io::CBlock const &, io::CBlock & out,
                                           bool & flag) const {
  auto const * const setup = dynamic_cast<BaseSimulationSetup *>(ForEdit().GetISimulationSetup(provider, false, false));
  BaseSolution * const solution = setup->GetSolutions().begin()->second;
  AString const variation = instance->GetVariationKey();
  flag = solution->HasValidSolutionData(variation, -1);
  if (flag) {
    auto const & values =
        dynamic_cast<FakeVariation *>(
            solution->GetVariationData(VariationIDIndex(variation, solution->GetVersionID(), this), false))
            ->values;
    TransferredNetwork network;
    network.ports = static_cast<long>(values.size());
    network.extension = AString::Format(L".s%dp", network.ports);
    for (double const value : values)
      network.text += AString::Format(L"%g\n", value);
    network.Write(out);
  } else {
    desktop::WriteRefusal(out, AString(L"not solved at ") + variation);
  }
  return transferType == TransferredNetwork::kTransferType;
}

bool TransferManager::OnAcquireTransferDataConnection(AString const & consumer, IDesignInstance *,
                                                      AString const & transferType, io::CBlock const & in,
                                                      io::CBlock & out, bool & flag) {
  calls.push_back(AString(L"acquire ") + consumer + L" " + transferType);
  TransferredNetwork network;
  flag = network.Read(in);
  desktop::WriteTransferFile(out, consumer + network.extension);
  return true;
}

bool TransferManager::OnRefreshTransferData(AString const & provider, AString const & consumer, IDesignInstance *,
                                            AString const & transferType, io::CBlock const & in, io::CBlock & out,
                                            bool & flag) {
  calls.push_back(AString(L"refresh ") + consumer + L" of " + provider + L" " + transferType);
  TransferredNetwork network;
  flag = network.Read(in) && desktop::TransferFileOf(in) == consumer + network.extension;
  if (!flag)
    desktop::WriteRefusal(out, L"other ports");
  return true;
}

bool TransferManager::OnReleaseTransferDataConnection(AString const & consumer, IDesignInstance *,
                                                      AString const & transferType, io::CBlock const &, io::CBlock &,
                                                      bool & flag) {
  calls.push_back(AString(L"release ") + consumer + L" " + transferType);
  flag = true;
  return true;
}

bool TransferProduct::ReadSource(LongFileName const & file, desktop::SourceDescription & description,
                                 AString & error) const {
  if (!FakeProduct::ReadSource(file, description, error))
    return false;
  for (AString const & name : description.files)
    if (name != file.FilePath()) {
      std::ostringstream content;
      content << std::ifstream(text::ToUtf8(name)).rdbuf();
      description.fingerprint += text::FromUtf8(content.str()) + L";";
    }
  return true;
}

std::unique_ptr<desktop::ProductSolutionManager> TransferProduct::MakeManager(IDesign * design) const {
  return std::make_unique<TransferManager>(design);
}

} // namespace support
