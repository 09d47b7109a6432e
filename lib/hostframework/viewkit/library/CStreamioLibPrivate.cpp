#include "viewkit/library/CStreamioLibPrivate.h"

#include "viewkit/library/BlockEncoding.h"
#include "viewkit/library/InPlaceFile.h"

CStreamioLibPrivate::CStreamioLibPrivate() = default;
CStreamioLibPrivate::~CStreamioLibPrivate() = default;

CStreamioLibrary::LibIOReturn CStreamioLibPrivate::Fail(LibIOReturn result, AString const & text) {
  if (result != kLibSuccess)
    m_lastError = text;
  return result;
}

CStreamioLibrary::LibIOReturn CStreamioLibPrivate::Checked(LibIOReturn result) {
  return m_file ? Fail(result, m_file->Error()) : Fail(kLibNotAttached, L"the library is attached to no file");
}

void CStreamioLibPrivate::SetBinaryMode(bool binary) {
  m_formIsSet = true;
  m_binary = binary;
}

bool CStreamioLibPrivate::IsBinaryModeFile() const { return WritesBinary(m_file && m_file->IsBinary()); }

void CStreamioLibPrivate::SetPrecision(int digits) { m_precision = digits; }

CStreamioLibraryStats CStreamioLibPrivate::GetFileStats() const {
  CStreamioLibraryStats stats;
  stats.status = kLibNotAttached;
  return m_file ? m_file->Statistics() : stats;
}

CStreamioLibrary::LibIOReturn CStreamioLibPrivate::LoadDefinition(io::CBlock & block) {
  return Checked(m_file ? m_file->Load(block) : kLibNotAttached);
}

CStreamioLibrary::LibIOReturn CStreamioLibPrivate::SaveDefinition(io::CBlock & block) {
  if (!m_file)
    return Checked(kLibNotAttached);
  io::CBlock const * const one = &block;
  return Checked(m_file->Save(std::span(&one, 1), {}, {IsBinaryModeFile(), m_precision}));
}

CStreamioLibrary::LibIOReturn CStreamioLibPrivate::SaveBlocks(io::CBlock & block) {
  if (!m_file)
    return Checked(kLibNotAttached);
  return Checked(m_file->Save(library::ChildBlocks(block), {}, {IsBinaryModeFile(), m_precision}));
}

CStreamioLibrary::LibIOReturn CStreamioLibPrivate::DeleteDefinition(AString const & name) {
  return DeleteBlocks({name});
}

CStreamioLibrary::LibIOReturn CStreamioLibPrivate::DeleteBlocks(std::vector<AString> const & names) {
  if (names.empty())
    return kLibSuccess;
  return Checked(m_file ? m_file->Save({}, names, {IsBinaryModeFile(), m_precision}) : kLibNotAttached);
}

CStreamioLibrary::LibIOReturn CStreamioLibPrivate::RewriteLibrary(bool convert) {
  return Checked(m_file ? m_file->Rewrite(true, {convert, IsBinaryModeFile(), m_precision}) : kLibNotAttached);
}

CStreamioLibrary::LibIOReturn CStreamioLibPrivate::ClearLibrary() {
  return Checked(m_file ? m_file->Rewrite(false, {false, IsBinaryModeFile(), m_precision}) : kLibNotAttached);
}

CStreamioLibrary::LibIOReturn CStreamioLibPrivate::LoadBlocks(io::CBlock & block, bool stopAtDamage) {
  return Checked(m_file ? m_file->LoadAll(block, stopAtDamage) : kLibNotAttached);
}

void CStreamioLibPrivate::SetLibPath(AString const & path, TMode) { CStreamioLibPrivate::SetLibPath(path); }

void CStreamioLibPrivate::SetLibPath(AString const & path) {
  m_lastError.clear();
  m_file.reset();
  m_file = std::make_unique<library::InPlaceFile>(path, m_lastError);
}
