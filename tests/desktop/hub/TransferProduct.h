#pragma once

#include "tests/desktop/support/FakeProduct.h"

namespace support {

/// Hands out and takes networks: the "network" of a point is its list of numbers, as many ports as there are numbers.
class TransferManager : public FakeManager {
public:
  using FakeManager::FakeManager;
  bool RetrieveTransferData(AString const & provider, AString const & consumer, IDesignInstance * instance,
                            AString const & transferType, io::CBlock const & in, io::CBlock & out,
                            bool & flag) const override;
  bool OnRefreshTransferData(AString const & provider, AString const & consumer, IDesignInstance * instance,
                             AString const & transferType, io::CBlock const & in, io::CBlock & out,
                             bool & flag) override;
  bool OnAcquireTransferDataConnection(AString const & consumer, IDesignInstance * instance,
                                       AString const & transferType, io::CBlock const & in, io::CBlock & out,
                                       bool & flag) override;
  bool OnReleaseTransferDataConnection(AString const & consumer, IDesignInstance * instance,
                                       AString const & transferType, io::CBlock const & in, io::CBlock & out,
                                       bool & flag) override;

  /// The calls that reached the manager of the project that takes, each as "acquire filter SParameters".
  static std::vector<AString> calls;
};

/// A fake product whose managers transfer networks; what the files hold that its source includes counts as circuit.
class TransferProduct : public FakeProduct {
public:
  AString GetName() const override { return L"transfers"; }
  bool ReadSource(LongFileName const & file, desktop::SourceDescription & description, AString & error) const override;
  std::unique_ptr<desktop::ProductSolutionManager> MakeManager(IDesign * design) const override;
};

} // namespace support
