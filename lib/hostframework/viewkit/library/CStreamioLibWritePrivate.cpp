#include "viewkit/library/CStreamioLibWritePrivate.h"

#include "basekit/file/FileOperations.h"
#include "basekit/io/CBlock.h"
#include "viewkit/library/BlockEncoding.h"
#include "viewkit/library/Commit.h"
#include "viewkit/library/SaveAs.h"

using library::LibraryState;

CStreamioLibWritePrivate::CStreamioLibWritePrivate() : m_state(std::make_unique<LibraryState>()) {}

CStreamioLibWritePrivate::CStreamioLibWritePrivate(LongFileName const & path, TMode mode) : CStreamioLibWritePrivate() {
  CStreamioLibWritePrivate::SetLibPath(path.FilePath(), mode);
}

CStreamioLibWritePrivate::~CStreamioLibWritePrivate() { library::Close(*m_state); }

CStreamioLibrary::LibIOReturn CStreamioLibWritePrivate::Checked(LibIOReturn result) {
  if (result == kLibNotAttached && m_state->error.empty())
    m_state->error = L"the library is attached to no file";
  return Fail(result, m_state->error);
}

bool CStreamioLibWritePrivate::IsBinaryModeFile() const {
  auto const * const log = m_state->publicLog ? m_state->publicLog.get() : m_state->privateLog.get();
  return WritesBinary(log && log->Records().Header().isBinary);
}

CStreamioLibraryStats CStreamioLibWritePrivate::GetFileStats() const { return library::Statistics(*m_state); }

CStreamioLibrary::LibIOReturn CStreamioLibWritePrivate::LoadDefinition(io::CBlock & block) {
  AString const name = block.Name();
  auto & state = *m_state;
  auto const cached = state.cache.empty() ? state.cache.end() : state.cache.find(name);
  if (cached != state.cache.end() && !cached->second.bytes.empty())
    return Checked(library::DecodePayload(name, cached->second.bytes, cached->second.isBinary, block, state.error));
  auto const found = library::FindBlock(state, text::ToUtf8(name));
  if (!found.log)
    return state.status != kLibSuccess ? Checked(state.status)
                                       : Checked(state.Fail(kLibNotFound, AString(L"there is no block ") + name));
  if (cached == state.cache.end())
    return Checked(found.log->Load(found.name, found.place, block, state.error));
  std::string payload;
  LibIOReturn const read = found.log->LoadPayload(found.name, found.place, payload, state.error);
  if (read != kLibSuccess)
    return Checked(read);
  bool const isBinary = (found.place.flags & io::kBinaryPayload) != 0;
  LibIOReturn const decoded = library::DecodePayload(name, payload, isBinary, block, state.error);
  if (decoded == kLibSuccess)
    cached->second = {std::move(payload), isBinary};
  return Checked(decoded);
}

CStreamioLibrary::LibIOReturn CStreamioLibWritePrivate::SaveDefinition(io::CBlock & block) {
  io::CBlock const * const one = &block;
  m_state->writesBinary = IsBinaryModeFile();
  return Checked(library::SaveGroup(*m_state, std::span(&one, 1), {m_state->writesBinary, m_precision}));
}

CStreamioLibrary::LibIOReturn CStreamioLibWritePrivate::SaveBlocks(io::CBlock & block) {
  m_state->writesBinary = IsBinaryModeFile();
  auto const blocks = library::ChildBlocks(block);
  return Checked(library::SaveGroup(*m_state, blocks, {m_state->writesBinary, m_precision}));
}

CStreamioLibrary::LibIOReturn CStreamioLibWritePrivate::DeleteDefinition(AString const & name) {
  return DeleteBlocks({name});
}

CStreamioLibrary::LibIOReturn CStreamioLibWritePrivate::DeleteBlocks(std::vector<AString> const & names) {
  return names.empty() ? kLibSuccess : Checked(library::HoldDeletes(*m_state, names));
}

CStreamioLibrary::LibIOReturn CStreamioLibWritePrivate::RewriteLibrary(bool convert) {
  auto & state = *m_state;
  bool const binary = IsBinaryModeFile();
  state.writesBinary = binary;
  LibIOReturn result = library::CheckPublicFile(state);
  if (result == kLibSuccess)
    result = library::AcquireForWriting(state);
  // Deletions that are held need no record: what they delete is left out.
  if (result == kLibSuccess && state.journaled.HasUnsent())
    result = library::Flush(state);
  if (result == kLibSuccess)
    result = library::CommitWhole(state, {convert, binary, m_precision}, binary);
  if (result == kLibSuccess)
    static_cast<void>(library::DropPrivateFile(state)); // It holds nothing any more that isn't committed.
  return Checked(result);
}

void CStreamioLibWritePrivate::SetLibPath(AString const & path, TMode mode) {
  library::Close(*m_state);
  bool const isReadOnly = m_state->isReadOnly;
  auto const readLength = m_state->readLength;
  m_state = std::make_unique<LibraryState>();
  m_state->isReadOnly = isReadOnly;
  m_state->readLength = readLength;
  m_lastError.clear();
  library::Attach(*m_state, path, mode);
  m_lastError = m_state->error;
}

CStreamioLibrary::LibIOReturn CStreamioLibWritePrivate::CommitAll(bool compact) {
  auto & state = *m_state;
  state.writesBinary = IsBinaryModeFile();
  LibIOReturn result = library::Commit(state, true);
  if (result != kLibSuccess)
    return Checked(result);
  auto const stats = library::Statistics(state);
  if (compact && state.publicLog && stats.deadBytes > stats.fileBytes / 2)
    return RewriteLibrary(false);
  static_cast<void>(library::DropPrivateFile(state)); // It holds nothing any more that isn't committed.
  return kLibSuccess;
}

CStreamioLibrary::LibIOReturn CStreamioLibWritePrivate::UpdateOriginal() {
  m_state->writesBinary = IsBinaryModeFile();
  return Checked(library::Commit(*m_state, false));
}

void CStreamioLibWritePrivate::ResetPrivateLib() {
  auto & state = *m_state;
  LibIOReturn result = state.privateLog ? library::AcquireForWriting(state) : kLibSuccess;
  if (result == kLibSuccess)
    result = library::DropPrivateFile(state);
  if (result == kLibSuccess) {
    state.heldDeletes.clear();
    state.journaled.Clear();
    state.cache.clear();
  }
  if (result != kLibSuccess)
    Checked(result);
}

void CStreamioLibWritePrivate::CacheBlock(AString const & name) { m_state->cache.try_emplace(name); }

void CStreamioLibWritePrivate::DeleteLibrary() {
  LongFileName const path = m_state->path;
  if (path.IsEmpty())
    return;
  LibIOReturn const locked = library::AcquireForWriting(*m_state);
  if (locked != kLibSuccess) {
    Checked(locked);
    return;
  }
  m_state = std::make_unique<LibraryState>();
  bool gone = true;
  for (auto const & file : {library::PrivatePath(path), path})
    gone = (!LFN_Exists(file) || LFN_DeleteFile(file)) && gone;
  SetLibPath(path.FilePath(), kOrdinaryMode);
  if (!gone)
    m_lastError = LFN_LastError();
}

bool CStreamioLibWritePrivate::IsRecovered() const { return m_state->isRecovered; }

CStreamioLibrary::LibIOReturn CStreamioLibWritePrivate::PrivIndexKeyList(std::list<AString> & names) const {
  if (m_state->status != kLibSuccess)
    return m_state->status;
  if (m_state->privateLog)
    for (auto const & [name, place] : m_state->privateLog->Index().InFileOrder())
      if (!m_state->heldDeletes.contains(name))
        names.push_back(text::FromUtf8(name));
  return kLibSuccess;
}

std::vector<AString> CStreamioLibWritePrivate::UncommittedBlocks() const {
  std::vector<AString> names;
  for (auto const & [name, place] : library::Unmerged(*m_state))
    if (place.IsBlock() && !m_state->heldDeletes.contains(name))
      names.push_back(text::FromUtf8(name));
  return names;
}

bool CStreamioLibWritePrivate::HasBlock(AString const & name) const {
  return m_state->status == kLibSuccess && library::FindBlock(*m_state, text::ToUtf8(name)).log != nullptr;
}

bool CStreamioLibWritePrivate::CopyToNewLibPath(AString const & path) {
  if (m_state->status == kLibNotAttached) {
    SetLibPath(path, kOrdinaryMode);
    return m_state->status == kLibSuccess;
  }
  if (m_state->path == LongFileName(path))
    return m_state->status == kLibSuccess;
  m_state->writesBinary = IsBinaryModeFile();
  std::unique_ptr<LibraryState> copy;
  LibIOReturn const result = library::CopyLibrary(*m_state, path, copy);
  if (result == kLibSuccess) {
    library::Close(*m_state);
    m_state = std::move(copy);
    return true;
  }
  Checked(result);
  m_state->copyResult = result;
  return false;
}

CStreamioLibrary::LibIOReturn CStreamioLibWritePrivate::LoadBlocks(io::CBlock & block, bool stopAtDamage) {
  LibIOReturn result = m_state->status;
  for (auto const & found : library::AllBlocks(*m_state)) {
    io::CBlock_ptr<io::CBlock> const child(new io::CBlock(text::FromUtf8(found.name)));
    LibIOReturn const read = found.log->Load(found.name, found.place, *child, m_state->error);
    if (read == kLibSuccess)
      block << child;
    else
      result = read;
    if (read != kLibSuccess && stopAtDamage)
      break;
  }
  return Checked(result);
}

CStreamioLibrary::LibIOReturn CStreamioLibWritePrivate::ClearLibrary() {
  std::vector<AString> names;
  for (auto const & found : library::AllBlocks(*m_state))
    names.push_back(text::FromUtf8(found.name));
  LibIOReturn const result = m_state->status == kLibSuccess ? DeleteBlocks(names) : m_state->status;
  return result == kLibSuccess ? RewriteLibrary(false) : Checked(result);
}

void CStreamioLibWritePrivate::SetReadOnly(bool readOnly) {
  m_state->isReadOnly = readOnly;
  m_state->readLength = 0;
}

void CStreamioLibWritePrivate::SetReadOnlyAt(std::uint64_t length) {
  m_state->isReadOnly = true;
  m_state->readLength = length;
}

CStreamioLibrary::LibIOReturn CStreamioLibWritePrivate::AcquireForWriting() {
  return Checked(library::AcquireForWriting(*m_state));
}

bool CStreamioLibWritePrivate::HasUnsavedChanges() const {
  return library::HasUnmerged(*m_state) || !m_state->heldDeletes.empty() || m_state->journaled.HasUnsent();
}

void CStreamioLibWritePrivate::SendUnsent() {
  if (m_state->journaled.HasUnsent())
    Checked(library::Flush(*m_state));
}

void CStreamioLibWritePrivate::NoteStored(io::CBlock const & block) {
  auto const found = library::FindBlock(*m_state, text::ToUtf8(block.Name()));
  if (found.log)
    m_state->journaled.Holds(block, found.log == m_state->privateLog.get() ? &found.place : nullptr,
                             found.log->Records().Header().salt);
}

AString const & CStreamioLibWritePrivate::WasSetAside() const { return m_state->setAside; }

std::uint64_t CStreamioLibWritePrivate::CommittedLength() const {
  return m_state->publicLog ? m_state->publicLog->Records().End() : 0;
}

CStreamioLibrary::LibIOReturn CStreamioLibWritePrivate::RevertCommit(std::uint64_t length) {
  return Checked(library::RevertCommit(*m_state, length));
}
