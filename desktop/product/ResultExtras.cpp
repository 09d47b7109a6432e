#include "desktop/product/ResultExtras.h"

#include "basekit/io/CNamed_value_manip.h"
#include "basekit/io/CQuery_ok_manip.h"

namespace desktop {

namespace {

wchar_t const * const kFile = L"File";
wchar_t const * const kValueItem = L"Value";
wchar_t const * const kStore = L"Store";
wchar_t const * const kNumber = L"Number";
wchar_t const * const kValue = L"Value";
wchar_t const * const kContent = L"Content";
wchar_t const * const kExtension = L"Extension";
wchar_t const * const kPath = L"Path";

template <class Value> std::optional<Value> Read(io::CBlock_func const & item, wchar_t const * name) {
  Value value{};
  bool isThere = false;
  item >> io::named(name, value) >> io::CQuery_ok_manip(isThere);
  return isThere ? std::optional<Value>(value) : std::nullopt;
}

io::CBlock_func FileItem(AString const & store, std::optional<double> number) {
  io::CBlock_func item(kFile);
  item << io::named(kStore, store);
  if (number)
    item << io::named(kNumber, *number);
  return item;
}

} // namespace

AString const ResultExtras::kBlockName(L"ResultExtras");
AString const ResultExtras::kRecordName(L"Stored");

void ResultExtras::AddFile(AString const & store, AString const & content, AString const & extension) {
  io::CBlock_func item = FileItem(store, std::nullopt);
  if (!extension.empty())
    item << io::named(kExtension, extension);
  item << io::named(kContent, content);
  m_block << item;
}

void ResultExtras::AddFile(AString const & store, double number, AString const & content) {
  io::CBlock_func item = FileItem(store, number);
  item << io::named(kContent, content);
  m_block << item;
}

void ResultExtras::AddValue(AString const & store, long value) { AppendValue(m_block, store, value); }

void ResultExtras::AppendTo(io::CBlock & result) const {
  if (!m_block.Empty())
    result << m_block;
}

void ResultExtras::AppendFile(io::CBlock & record, AString const & store, std::optional<double> number,
                              AString const & path) {
  io::CBlock_func item = FileItem(store, number);
  item << io::named(kPath, path);
  record << item;
}

void ResultExtras::AppendValue(io::CBlock & record, AString const & store, long value) {
  io::CBlock_func item(kValueItem);
  item << io::named(kStore, store) << io::named(kValue, value);
  record << item;
}

std::vector<ResultExtras::Item> ResultExtras::ItemsOf(io::CBlock const & block) {
  std::vector<Item> items;
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock_func> const line(child);
    bool const isFile = line && line->Name() == kFile;
    if (!isFile && !(line && line->Name() == kValueItem))
      continue;
    Item item;
    item.store = Read<AString>(*line, kStore).value_or(AString());
    item.number = Read<double>(*line, kNumber);
    if (!isFile)
      item.value = Read<long>(*line, kValue).value_or(-1);
    item.content = Read<AString>(*line, kContent).value_or(AString());
    item.extension = Read<AString>(*line, kExtension).value_or(AString());
    item.path = Read<AString>(*line, kPath).value_or(AString());
    items.push_back(std::move(item));
  }
  return items;
}

} // namespace desktop
