#include "bench/blocks/Cases.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "bench/support/Measure.h"
#include "bench/support/Values.h"
#include "solutionmanager/address/SolutionVariationKey.h"

#include <memory>

namespace bench {

namespace {

using Shared = std::shared_ptr<io::CBlock const>;

Shared RunOfDoubles(std::size_t n) {
  auto block = std::make_shared<io::CBlock>(L"Samples");
  io::CBlock_func run(L"Data");
  run.AppendRun(ValuesOf(1, n));
  *block << run;
  return block;
}

Shared NamedValues(std::size_t n) {
  auto block = std::make_shared<io::CBlock>(L"Settings");
  auto const values = ValuesOf(2, n);
  for (std::size_t i = 0; i < n; ++i)
    *block << io::CBlock_named_value(AString::Format(L"Item%lu", i), io::CBlock_value(values[i]));
  return block;
}

Shared NestedBlocks(std::size_t n) {
  auto block = std::make_shared<io::CBlock>(L"Setups");
  for (std::size_t i = 0; i < n; ++i) {
    io::CBlock child(AString::Format(L"Setup%lu", i));
    child << io::CBlock_named_value(L"ID", io::CBlock_value(static_cast<long>(i)));
    child << io::CBlock_named_value(L"Name", io::CBlock_value(AString(L"Sweep")));
    *block << child;
  }
  return block;
}

Shared Texts(std::size_t n) {
  auto block = std::make_shared<io::CBlock>(L"Files");
  io::CBlock_vec texts(L"Names");
  for (std::size_t i = 0; i < n; ++i)
    texts << AString::Format(L"results/point%lu.s2p", i);
  *block << texts;
  return block;
}

SolutionVariationKey KeyOf(std::size_t i) {
  return SolutionVariationKey(3, AString::Format(L"C1=\"%lu.25pF\"; L1=\"4.7nH\"; W1=\"0.35mm\"", i), 5, 7);
}

Case BlockCase(std::string const & content, Shared const & block, std::size_t items, io::Form form) {
  Case made;
  made.form = form == io::Form::Binary ? "binary" : "text";
  made.content = content;
  made.items = items;
  made.write = [block, form](std::string & out) {
    Require(io::EncodeBlock(*block, form, io::kExactDigits, out), "a block can't be written");
  };
  made.read = [form](std::string const & bytes) {
    io::CBlock read;
    Require(io::DecodeBlock(bytes, form, read), "a block can't be read");
  };
  made.memory = [form](std::string const & bytes) {
    auto const before = HeapInUse();
    io::CBlock read;
    Require(io::DecodeBlock(bytes, form, read), "a block can't be read");
    return static_cast<std::size_t>(HeapInUse() - before);
  };
  return made;
}

// The names of blocks in memory; a byte stands for a character here.
Case KeysCase(std::size_t n) {
  auto keys = std::make_shared<std::vector<SolutionVariationKey>>();
  auto packed = std::make_shared<std::vector<AString>>();
  for (std::size_t i = 0; i < n; ++i) {
    keys->push_back(KeyOf(i));
    packed->push_back(keys->back().Pack());
  }
  Case made;
  made.form = "packed";
  made.content = "keys";
  made.items = n;
  made.write = [keys](std::string & out) {
    for (auto const & key : *keys)
      out.append(key.Pack().size(), ' ');
  };
  made.read = [packed](std::string const &) {
    SolutionVariationKey key;
    for (auto const & text : *packed)
      Require(key.Unpack(text), "a key can't be read");
  };
  made.memory = [packed](std::string const &) {
    auto const before = HeapInUse();
    std::vector<SolutionVariationKey> read(packed->size());
    for (std::size_t i = 0; i < read.size(); ++i)
      Require(read[i].Unpack((*packed)[i]), "a key can't be read");
    return static_cast<std::size_t>(HeapInUse() - before);
  };
  return made;
}

} // namespace

std::vector<Case> AllCases(std::size_t n) {
  std::vector<Case> cases;
  for (io::Form const form : {io::Form::Binary, io::Form::Text}) {
    cases.push_back(BlockCase("doubles", RunOfDoubles(n), n, form));
    cases.push_back(BlockCase("named_values", NamedValues(n), n, form));
    cases.push_back(BlockCase("nested_blocks", NestedBlocks(n), n * 3, form));
    cases.push_back(BlockCase("texts", Texts(n), n, form));
  }
  cases.push_back(KeysCase(n));
  return cases;
}

} // namespace bench
