#include "desktop/product/TransferredNetwork.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"

namespace desktop {

namespace {

AString const kNetwork(L"Network");
AString const kPorts(L"Ports");
AString const kExtension(L"Extension");
AString const kText(L"Text");
AString const kFile(L"File");
AString const kRefusal(L"Refusal");

AString TextIn(io::CBlock const & block, AString const & name) {
  AString text;
  block >> io::named(name, text);
  return text;
}

} // namespace

AString const TransferredNetwork::kTransferType(L"SParameters");

void TransferredNetwork::Write(io::CBlock & block) const {
  io::CBlock network(kNetwork);
  network << io::named(kPorts, ports) << io::named(kExtension, extension) << io::named(kText, text);
  block << network;
}

bool TransferredNetwork::Read(io::CBlock const & block) {
  io::CBlock const * const network = block.FindBlock(kNetwork);
  if (!network)
    return false;
  *network >> io::named(kPorts, ports) >> io::named(kExtension, extension) >> io::named(kText, text);
  return network->Found() && ports > 0 && !extension.empty();
}

void WriteTransferFile(io::CBlock & block, AString const & name) { block << io::named(kFile, name); }

AString TransferFileOf(io::CBlock const & block) { return TextIn(block, kFile); }

void WriteRefusal(io::CBlock & block, AString const & why) { block << io::named(kRefusal, why); }

AString RefusalOf(io::CBlock const & block) { return TextIn(block, kRefusal); }

} // namespace desktop
