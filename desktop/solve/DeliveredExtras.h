#pragma once

#include "basekit/io/CBlock.h"
#include "basekit/text/AString.h"

#include <vector>

class BaseSolution;

namespace desktop {

class IResultReceiver;

/// What the points of one batch delivered beside their data, on its way into the stores of their solutions.  Files
/// stand from Take on; Accept enters them when the batch is stored, and without it they are gone again at the end.
class DeliveredExtras {
public:
  DeliveredExtras() = default;
  ~DeliveredExtras();
  DeliveredExtras(DeliveredExtras const &) = delete;
  DeliveredExtras & operator=(DeliveredExtras const &) = delete;

  /// The block as it is to be stored: without the extras, with the record of them.  A solution may be null.  Throws
  /// Error of kind kStorage.
  io::CBlock_ptr<io::CBlock> Take(BaseSolution * solution, AString const & variation, long version,
                                  io::CBlock_ptr<io::CBlock> const & result);
  /// Whether there was anything to enter.
  bool Accept();

private:
  struct Delivery {
    IResultReceiver * receiver;
    AString variation;
    long version;
    io::CBlock record;
  };

  std::vector<Delivery> m_deliveries;
};

} // namespace desktop
