#pragma once

#include "basekit/text/AString.h"

namespace io {
class CBlock;
}

namespace desktop {

/// What a connection of the kind kTransferType carries: a solved network of one design as a file that another one can
/// read.  Products exchange it in the blocks of ISolutionMgrForHubIntegration.  There `provider` is the name of the
/// setup that solved the network, the instance its point, and `consumer` the connection's name; the flag comes back
/// true when the call was carried out, and else the block out tells why not (RefusalOf).
///
///     RetrieveTransferData               of the source: out holds the network
///     OnAcquireTransferDataConnection2   of the target: in holds the network; out tells the file's name
///     OnRefreshTransferData2             the same; in holds the name of the file that the connection has, too
///     OnReleaseTransferDataConnection2   of the target
struct TransferredNetwork {
  static AString const kTransferType; ///< "SParameters"

  long ports = 0;
  AString extension; ///< ".s2p"
  AString text;      ///< of a Touchstone file; equal for equal data

  /// Appends a block.
  void Write(io::CBlock & block) const;
  /// False when there is none, or none that makes sense.
  bool Read(io::CBlock const & block);
};

/// Without folder.
void WriteTransferFile(io::CBlock & block, AString const & name);
AString TransferFileOf(io::CBlock const & block);
/// One line: what is wrong, and what to do.
void WriteRefusal(io::CBlock & block, AString const & why);
AString RefusalOf(io::CBlock const & block);

} // namespace desktop
