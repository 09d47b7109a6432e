#pragma once

#include "basekit/io/CStreamio_block_object.h"

/// Names a transfer connection: the kind of transfer and the connection's GUID.
class HubTransferConnectionIdentifier : public io::CStreamio_block_object {
public:
  HubTransferConnectionIdentifier() = default;
  HubTransferConnectionIdentifier(AString const & transferType, AString const & guid)
      : m_transferType(transferType), m_guid(guid) {}
  ~HubTransferConnectionIdentifier() override;

  AString GetItemName() const override;
  io::ReadError DoDataExchange(io::CBlock & block, bool reading) override;

  AString const & GetTransferType() const { return m_transferType; }
  AString const & GetGuid() const { return m_guid; }

private:
  AString m_transferType;
  AString m_guid;
};
