#include "desktop/solve/DeliveredExtras.h"

#include "desktop/product/IResultReceiver.h"
#include "desktop/product/ResultExtras.h"
#include "solutionmanager/model/BaseSolution.h"

namespace desktop {

namespace {

// No look-up, which would build an index of each block that comes.
io::CBlock_ptr<io::CBlock> ExtrasOf(io::CBlock const & result) {
  for (auto const & item : result)
    if (io::CBlock_ptr<io::CBlock> const block(item); block && block->Name() == ResultExtras::kBlockName)
      return block;
  return io::CBlock_ptr<io::CBlock>();
}

} // namespace

DeliveredExtras::~DeliveredExtras() {
  for (Delivery const & delivery : m_deliveries)
    delivery.receiver->Withdraw(delivery.variation, delivery.version, delivery.record);
}

io::CBlock_ptr<io::CBlock> DeliveredExtras::Take(BaseSolution * solution, AString const & variation, long version,
                                                 io::CBlock_ptr<io::CBlock> const & result) {
  io::CBlock_ptr<io::CBlock> const extras = ExtrasOf(*result);
  if (!extras)
    return result;
  io::CBlock_ptr<io::CBlock> stored(new io::CBlock(result->Name()));
  for (auto const & item : *result)
    if (item.Item() != extras.Item())
      *stored << item;
  if (auto * const receiver = dynamic_cast<IResultReceiver *>(solution)) {
    io::CBlock record(ResultExtras::kRecordName);
    receiver->Receive(variation, version, *extras, record);
    *stored << record;
    m_deliveries.push_back({receiver, variation, version, std::move(record)});
  }
  return stored;
}

bool DeliveredExtras::Accept() {
  for (Delivery const & delivery : m_deliveries)
    delivery.receiver->Accept(delivery.variation, delivery.version, delivery.record);
  bool const isAny = !m_deliveries.empty();
  m_deliveries.clear();
  return isAny;
}

} // namespace desktop
