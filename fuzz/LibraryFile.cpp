// Library files from hostile bytes: opened, listed, read, checked, taken over, compacted.  Whatever opens gives blocks
// that a compaction keeps, and the compacted library is whole.
//
// An input is the public file and, behind a line "----", the private one.  When it begins with '!' every checksum is
// made right first, so that the inside of records is reached.

#include "fuzz/Entry.h"
#include "fuzz/MemoryFiles.h"

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CToken_iostream.h"
#include "basekit/io/Checksum.h"
#include "viewkit/library/CStreamioLibWritePrivate.h"
#include "viewkit/library/LibraryReader.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr std::string_view kBetween = "\n----\n";
constexpr wchar_t const * kPublic = L"amp.qsol";
constexpr wchar_t const * kPrivate = L"amp.qsol_priv";
constexpr auto kGood = CStreamioLibrary::kLibSuccess;

void SetHex(std::string & bytes, std::size_t at, std::uint32_t value) {
  char digits[9];
  std::snprintf(digits, sizeof digits, "%08x", value);
  bytes.replace(at, 8, digits, 8);
}

std::size_t Hex(std::string const & bytes, std::size_t at, std::size_t digits) {
  std::size_t value = 0;
  std::from_chars(bytes.data() + at, bytes.data() + at + digits, value, 16);
  return value;
}

// As docs/formats/qsol.md tells it.
void MendRecord(std::string & bytes, std::size_t at) {
  constexpr std::size_t header = 75;
  std::size_t const left = bytes.size() - at - header;
  std::size_t const name = Hex(bytes, at + 9, 8) + 1;
  std::size_t const payload = Hex(bytes, at + 18, 12) + 1;
  if (name <= left && payload <= left - name) {
    SetHex(bytes, at + 48, io::Checksum(std::string_view(bytes).substr(at + header, name)));
    SetHex(bytes, at + 57, io::Checksum(std::string_view(bytes).substr(at + header + name, payload)));
  }
  char offset[17];
  std::snprintf(offset, sizeof offset, "%016zx", at);
  SetHex(bytes, at + 66, io::Checksum(std::string(offset, 16) + bytes.substr(at, 66)));
}

void MendChecksums(std::string & bytes) {
  if (bytes.size() < 76)
    return;
  SetHex(bytes, 67, io::Checksum(std::string_view(bytes).substr(0, 67)));
  bytes[75] = '\n';
  std::string const salt = bytes.substr(33, 16);
  for (auto at = bytes.find("#q ", 76); at != std::string::npos && at + 75 <= bytes.size();
       at = bytes.find("#q ", at + 3)) {
    bytes.replace(at + 31, 16, salt);
    MendRecord(bytes, at);
  }
}

void ReadAll(library::LibraryReader & reader) {
  for (auto const & entry : reader.List()) {
    io::CBlock block(entry.name);
    static_cast<void>(reader.Load(block)); // Damage is told, which is all that is asked.
  }
  std::vector<library::LibraryReader::Damage> damages;
  reader.Verify(damages);
  bool changed = false;
  static_cast<void>(reader.Refresh(changed));
}

void Look() {
  for (bool const withPrivate : {false, true}) {
    library::LibraryReader reader;
    static_cast<void>(reader.Open(LongFileName(kPublic), withPrivate)); // May well fail.
    ReadAll(reader);
  }
  library::LibraryReader::StateOfPrivateFile(LongFileName(kPublic));
  for (wchar_t const * const path : {kPublic, kPrivate}) {
    library::LibraryReader alone;
    static_cast<void>(alone.OpenAlone(LongFileName(path))); // May well fail.
    ReadAll(alone);
    io::CToken_iostream stream(AString(path), 0);
    stream.BuildIndex(9);
    io::CBlock map(L"BlockMapName");
    if (stream.BlockSeek(map.Name()))
      stream >> map;
  }
}

void Write(CStreamioLibrary::TMode mode) {
  CStreamioLibWritePrivate library;
  library.SetLibPath(kPublic, mode);
  io::CBlock block(L"New");
  bool const isSaved = library.SaveDefinition(block) == kGood;
  if (library.CommitAll(false) != kGood || library.RewriteLibrary(true) != kGood || !isSaved)
    return;
  library::LibraryReader reader;
  std::vector<library::LibraryReader::Damage> damages;
  if (reader.Open(LongFileName(kPublic), false) != kGood || reader.Load(block) != kGood)
    std::abort();
  reader.Verify(damages);
  if (!damages.empty())
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
  std::string bytes(reinterpret_cast<char const *>(data), size);
  bool const mends = bytes.starts_with('!');
  bytes.erase(0, mends ? 1 : 0);
  auto const between = bytes.find(kBetween);
  std::string privateBytes = between == bytes.npos ? "" : bytes.substr(between + kBetween.size());
  bytes.resize(between == bytes.npos ? bytes.size() : between + 1);
  if (mends) {
    MendChecksums(bytes);
    MendChecksums(privateBytes);
  }
  for (auto const mode : {CStreamioLibrary::kOrdinaryMode, CStreamioLibrary::kRecoveryMode}) {
    MemoryFiles files;
    if (!bytes.empty())
      files.Put(kPublic, bytes);
    if (!privateBytes.empty())
      files.Put(kPrivate, privateBytes);
    if (mode == CStreamioLibrary::kOrdinaryMode)
      Look();
    Write(mode);
  }
  return 0;
}
