#include "solutionmanager/transfer/HubTransferConnectionIdentifier.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/DoDataExchange.h"

HubTransferConnectionIdentifier::~HubTransferConnectionIdentifier() = default;

AString HubTransferConnectionIdentifier::GetItemName() const { return L"TransferConnectionIdentifier"; }

io::ReadError HubTransferConnectionIdentifier::DoDataExchange(io::CBlock & block, bool reading) {
  io::CReadError result;
  result += io::DoDataExchange(block, reading, L"TransferType", m_transferType);
  result += io::DoDataExchange(block, reading, L"GUID", m_guid);
  RecordError(result);
  return result;
}
