#include "products/command/product/QuantityBlock.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"

#include <algorithm>
#include <cmath>

namespace command {
namespace {

using desktop::QuantityValues;

wchar_t const * const kQuantities = L"Quantities";
wchar_t const * const kQuantity = L"Quantity";
wchar_t const * const kName = L"Name";
wchar_t const * const kUnit = L"Unit";
wchar_t const * const kOver = L"Over";
wchar_t const * const kValue = L"Value";
wchar_t const * const kValues = L"Values";

bool ReadValues(io::CBlock const & block, std::vector<double> & values) {
  auto const * const item = static_cast<io::CBlock_func *>(block.FindItem(kValues, io::CBlock_item::Kind::Func));
  if (!item)
    return false;
  io::CBlock_func::iterator place = item->begin();
  item->QueryUnamedValues(place, values);
  return place == item->end();
}

bool ReadQuantity(io::CBlock const & block, QuantityValues & quantity) {
  block >> io::named(kName, quantity.name);
  if (!block.Found())
    return false;
  block >> io::named(kUnit, quantity.unit) >> io::named(kOver, quantity.over);
  double value = 0.0;
  block >> io::named(kValue, value);
  quantity.isScalar = block.Found();
  if (!quantity.isScalar)
    return ReadValues(block, quantity.values);
  quantity.values = {value};
  return true;
}

QuantityValues const * Find(std::vector<QuantityValues> const & quantities, AString const & name) {
  auto const found = std::find_if(quantities.begin(), quantities.end(), [&](QuantityValues const & quantity) {
    return AString::MatchNoCase(quantity.name, name);
  });
  return found == quantities.end() ? nullptr : &*found;
}

AString ProblemOf(QuantityValues const & quantity, std::vector<QuantityValues> const & quantities) {
  if (quantity.name.empty() || Find(quantities, quantity.name) != &quantity)
    return L"has no name of its own";
  if (quantity.values.empty())
    return L"has no value";
  if (!std::all_of(quantity.values.begin(), quantity.values.end(), [](double value) { return std::isfinite(value); }))
    return L"has a value that is not finite";
  if (quantity.over.empty())
    return AString();
  QuantityValues const * const over = Find(quantities, quantity.over);
  if (!over || over->isScalar || quantity.isScalar)
    return AString(L"runs over ") + quantity.over + L", which is no column beside it";
  if (over->values.size() != quantity.values.size())
    return AString::Format(L"has %lu values, and %s, which it runs over, has %lu", quantity.values.size(),
                           quantity.over, over->values.size());
  return AString();
}

} // namespace

AString ProblemOfQuantities(std::vector<QuantityValues> const & quantities) {
  if (quantities.empty())
    return L"there are no quantities";
  for (QuantityValues const & quantity : quantities)
    if (AString const problem = ProblemOf(quantity, quantities); !problem.empty())
      return quantity.name + L": " + problem;
  return AString();
}

void WriteQuantities(std::vector<QuantityValues> const & quantities, io::CBlock & block) {
  io::CBlock all(kQuantities);
  for (QuantityValues const & quantity : quantities) {
    io::CBlock item(kQuantity);
    item << io::named(kName, quantity.name);
    if (!quantity.unit.empty())
      item << io::named(kUnit, quantity.unit);
    if (!quantity.over.empty())
      item << io::named(kOver, quantity.over);
    if (quantity.isScalar) {
      item << io::named(kValue, quantity.values.front());
    } else {
      io::CBlockFuncPtr const values(kValues);
      values->AppendRun(std::vector<double>(quantity.values));
      item << values;
    }
    all << item;
  }
  block << all;
}

bool ReadQuantities(io::CBlock const & block, std::vector<QuantityValues> & quantities) {
  quantities.clear();
  io::CBlock const * const all = block.FindBlock(kQuantities);
  bool isGood = all != nullptr;
  if (all)
    for (auto const & child : *all) {
      io::CBlock_ptr<io::CBlock> const item(child);
      QuantityValues quantity;
      isGood = isGood && item && AString::MatchNoCase(item->Name(), kQuantity) && ReadQuantity(*item, quantity);
      quantities.push_back(std::move(quantity));
    }
  isGood = isGood && ProblemOfQuantities(quantities).empty();
  if (!isGood)
    quantities.clear();
  return isGood;
}

} // namespace command
