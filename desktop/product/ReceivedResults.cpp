// How what a worker delivered gets into the stores of a solution.
#include "basekit/diag/Assert.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/product/ResultLayout.h"
#include "desktop/product/ResultStoreOwner.h"
#include "solutionmanager/locations/CMirroredData.h"
#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "solutionmanager/locations/CMirroredLocationData.h"

namespace desktop {

namespace {

file::FileStatus WriteWhole(LongFileName const & path, std::string_view content) {
  std::unique_ptr<file::IFile> opened;
  auto status = file::FileSystem().Open(path, file::OpenMode::Create, opened);
  if (status.Ok())
    status = opened->Truncate(0); // What an earlier process left half written.
  return status.Ok() ? opened->Write(0, std::span(&content, 1)) : status;
}

// As an acknowledged point is, the file is safe from the death of this process; a save makes it safe from loss of
// power.
void PutInPlace(LongFileName const & path, std::string_view content) {
  LongFileName const beside(path.FilePath() + L".new");
  auto status = WriteWhole(beside, content);
  if (status.Ok())
    status = file::FileSystem().Rename(beside, path);
  if (status.Ok())
    return;
  static_cast<void>(file::FileSystem().RemoveFile(beside)); // The failure is told already.
  throw Error(ErrorKind::kStorage, path.FilePath() + L": a result file can't be written (" + status.Text() +
                                       L"); make room or get permission, and solve again");
}

// A record is read from a file: it names nothing but files of the store.
bool IsFileOf(AString const & store, AString const & path) {
  auto const location = ResultLocation::Parse(path);
  return location && location->keyword == store;
}

} // namespace

AString ResultStoreOwner::WorkingPath(Store & store, VariationIDIndex const & key, std::optional<double> number,
                                      bool forWrite) const {
  if (store.files && !number)
    return store.files->GetRelativePath(key, forWrite, false);
  return store.numbered && number ? store.numbered->GetRelativePath(key, *number, forWrite, false) : AString();
}

void ResultStoreOwner::Enter(Store & store, VariationIDIndex const & key, ResultExtras::Item const & item) {
  if (store.values && item.value)
    store.values->SetData(key, *item.value);
  else if (store.files && !item.number)
    store.files->SetData(key);
  else if (store.numbered && item.number)
    store.numbered->SetData(key, *item.number);
}

bool ResultStoreOwner::Has(Store const & store, VariationIDIndex const & key, ResultExtras::Item const & item) {
  return store.numbered && item.number ? store.numbered->HaveData(key, *item.number) : store.map->HaveData(key);
}

AString ResultStoreOwner::WriteFile(Store & store, VariationIDIndex const & key, ResultExtras::Item const & item) {
  AString const root = GetRootDirectory(!store.hasFolder);
  AString const path = WorkingPath(store, key, item.number, true);
  if (path.empty())
    return path;
  if (!store.hasFolder)
    LFN_CreateDirectory(LongFileName(LongFileName(root + path).DirPath())); // The write tells what is wrong.
  PutInPlace(LongFileName(root + path), text::ToUtf8(item.content));
  store.hasFolder = true;
  return path;
}

void ResultStoreOwner::SyncFile(AString const & keyword, VariationIDIndex const & key, std::optional<double> number) {
  Store * const store = Find(keyword);
  AString const path = store ? WorkingPath(*store, key, number, false) : AString();
  std::unique_ptr<file::IFile> opened;
  // A file that is not there is told by the move.
  if (!path.empty() &&
      file::FileSystem().Open(LongFileName(GetRootDirectory(false) + path), file::OpenMode::Read, opened).Ok())
    static_cast<void>(opened->Sync());
}

void ResultStoreOwner::OnMoveLocation(AString const & variation, long originalVersion, long,
                                      AString const & functionKeyword) {
  SyncFile(functionKeyword, KeyOf(variation, originalVersion), std::nullopt);
}

void ResultStoreOwner::OnMoveDoubleLocation(AString const & variation, long originalVersion, long, double value,
                                            AString const & functionKeyword) {
  SyncFile(functionKeyword, KeyOf(variation, originalVersion), value);
}

void ResultStoreOwner::Receive(AString const & variation, long version, io::CBlock const & extras,
                               io::CBlock & record) {
  VariationIDIndex const key = KeyOf(variation, version);
  try {
    for (ResultExtras::Item const & item : ResultExtras::ItemsOf(extras)) {
      Store * const store = Find(item.store);
      KVRO_ASSERT(store != nullptr);
      if (store && item.value) {
        ResultExtras::AppendValue(record, item.store, *item.value);
      } else if (store) {
        if (!item.extension.empty())
          LearnExtension(item.store, version, item.extension);
        if (AString const path = WriteFile(*store, key, item); !path.empty())
          ResultExtras::AppendFile(record, item.store, item.number, path);
      }
    }
  } catch (Error const &) {
    Withdraw(variation, version, record);
    throw;
  }
}

void ResultStoreOwner::Accept(AString const & variation, long version, io::CBlock const & record) {
  VariationIDIndex const key = KeyOf(variation, version);
  for (ResultExtras::Item const & item : ResultExtras::ItemsOf(record))
    if (Store * const store = Find(item.store))
      Enter(*store, key, item);
}

void ResultStoreOwner::Withdraw(AString const & variation, long version, io::CBlock const & record) {
  VariationIDIndex const key = KeyOf(variation, version);
  for (ResultExtras::Item const & item : ResultExtras::ItemsOf(record)) {
    Store * const store = Find(item.store);
    if (store && !item.value && IsFileOf(item.store, item.path) &&
        WorkingPath(*store, key, item.number, false) != item.path)
      LFN_DeleteFile(LongFileName(GetRootDirectory(false) + item.path));
  }
}

int ResultStoreOwner::TakeUp(AString const & variation, long version, io::CBlock const & record) {
  VariationIDIndex const key = KeyOf(variation, version);
  AString const root = GetRootDirectory(false);
  int lost = 0;
  for (ResultExtras::Item const & item : ResultExtras::ItemsOf(record)) {
    Store * const store = Find(item.store);
    if (!store || (!item.value && !IsFileOf(item.store, item.path)))
      continue;
    if (item.value) {
      Enter(*store, key, item);
      continue;
    }
    if (WorkingPath(*store, key, item.number, false) == item.path)
      continue;
    LongFileName const file(root + item.path);
    if (!LFN_Exists(file)) {
      lost += Has(*store, key, item) ? 0 : 1;
      continue;
    }
    // The mirrored number in the name may be one that nobody remembers.
    LearnExtension(item.store, version, ResultLocation::Parse(item.path)->extension);
    AString const place = WorkingPath(*store, key, item.number, true);
    if (place == item.path || LFN_Move(file, LongFileName(root + place), kOverwrite))
      Enter(*store, key, item);
    else
      ++lost;
  }
  return lost;
}

void ResultStoreOwner::TextsChanged(std::map<AString, AString> const & texts) {
  for (auto & [keyword, store] : m_byKeyword) {
    std::vector<VariationIDIndex> keys;
    store.map->ListValidKeys(keys);
    for (VariationIDIndex const & key : keys)
      if (auto const changed = texts.find(key.GetVariation());
          changed != texts.end() && changed->second != changed->first)
        CarryOver(store, key, KeyOf(changed->second, key.GetVersionID()));
  }
}

void ResultStoreOwner::CarryOver(Store & store, VariationIDIndex const & from, VariationIDIndex const & to) {
  if (store.values)
    store.values->SetData(to, store.values->GetData(from));
  if (store.files)
    CarryFile(store, from, to, std::nullopt);
  if (store.numbered) {
    std::vector<double> numbers;
    store.numbered->ListValidDoubles(from, numbers);
    for (double const number : numbers)
      CarryFile(store, from, to, number);
  }
  store.map->DiscardMirroredData(from);
}

// A saved file stays for a discard; what is not saved is nobody else's.
void ResultStoreOwner::CarryFile(Store & store, VariationIDIndex const & from, VariationIDIndex const & to,
                                 std::optional<double> number) {
  AString const root = GetRootDirectory(false);
  AString const path = WorkingPath(store, from, number, false);
  auto const location = ResultLocation::Parse(path);
  if (!location)
    return;
  bool const isSaved = location->version == from.GetVersionID();
  LearnExtension(location->keyword, to.GetVersionID(), location->extension);
  LongFileName const source(root + path);
  LongFileName const target(root + WorkingPath(store, to, number, true));
  if (isSaved ? LFN_Copy(source, target, kOverwrite) : LFN_Move(source, target, kOverwrite)) {
    ResultExtras::Item item;
    item.number = number;
    Enter(store, to, item);
  }
}

} // namespace desktop
