#pragma once

#include "basekit/text/AString.h"

class HubTransferConnectionIdentifier;
class IDesignInstance;
namespace io {
class CBlock;
}

/// Transfer of solved data to other components across connections.  Every operation answers whether the product
/// offers the transfer; the last argument's meaning is the product's.
class ISolutionMgrForHubIntegration {
public:
  virtual bool RetrieveTransferData(AString const & provider, AString const & consumer, IDesignInstance * instance,
                                    AString const & transferType, io::CBlock const & in, io::CBlock & out,
                                    bool & flag) const = 0;
  virtual bool OnRefreshTransferData(AString const & provider, AString const & consumer, IDesignInstance * instance,
                                     AString const & transferType, io::CBlock const & in, io::CBlock & out,
                                     bool & flag) = 0;
  virtual bool OnAcquireTransferDataConnection(AString const & consumer, IDesignInstance * instance,
                                               AString const & transferType, io::CBlock const & in, io::CBlock & out,
                                               bool & flag) = 0;
  virtual bool OnReleaseTransferDataConnection(AString const & consumer, IDesignInstance * instance,
                                               AString const & transferType, io::CBlock const & in, io::CBlock & out,
                                               bool & flag) = 0;
  virtual bool OnRefreshTransferData2(AString const & provider, AString const & consumer, IDesignInstance * instance,
                                      HubTransferConnectionIdentifier const & connection, io::CBlock const & in,
                                      io::CBlock & out, bool & flag) = 0;
  virtual bool OnAcquireTransferDataConnection2(AString const & consumer, IDesignInstance * instance,
                                                HubTransferConnectionIdentifier const & connection,
                                                io::CBlock const & in, io::CBlock & out, bool & flag) = 0;
  virtual bool OnReleaseTransferDataConnection2(AString const & consumer, IDesignInstance * instance,
                                                HubTransferConnectionIdentifier const & connection,
                                                io::CBlock const & in, io::CBlock & out, bool & flag) = 0;

protected:
  ~ISolutionMgrForHubIntegration() = default;
};
