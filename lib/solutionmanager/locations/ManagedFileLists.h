#pragma once

#include "basekit/file/LongFileName.h"
#include "basekit/text/AString.h"

#include <map>
#include <set>
#include <utility>
#include <vector>

namespace io {
class CBlock;
class CToken_istream;
} // namespace io

/// The two list files of managed files: blocks of vectors, each named by a base directory, that hold file names.
namespace managed {

inline constexpr wchar_t kIsBigEndian[] = L"IsBigEndian";
inline constexpr wchar_t kManagedFiles[] = L"ManagedFiles";
inline constexpr wchar_t kDeletedFiles[] = L"DeletedFiles";
/// Reserved in this format.
inline constexpr wchar_t kFileName[] = L"FileName";

inline constexpr int kReadFlags = 2048;
inline constexpr int kWriteFlags = 32;

/// Base directories with the names of their files; case counts in both.
using Names = std::map<AString, std::set<AString>>;

/// A base directory without slashes at its end: both spellings are one folder.
AString FolderName(AString const & baseDir);
/// Whether the list is a file, of no absurd size, that opens.
bool CanRead(LongFileName const & list);
/// False, and reported, for a folder: what stands in it is in no list.
bool IsNoFolder(LongFileName const & path);
/// False, and reported, when the blocks are not whole; a stream that does not begin with the first is the caller's to
/// report.
bool ReadBlocks(io::CToken_istream & in, io::CBlock & managedFiles, io::CBlock * deletedFiles);
/// What the keyword at the stream's place says; false without it.
bool ReadByteOrder(io::CToken_istream & in);
void AppendName(io::CBlock & block, AString const & baseDir, AString const & fileName);
/// The base directories of a block with their names, in the order of the block.  What is no text is reported and
/// passed over.
std::vector<std::pair<AString, std::vector<AString>>> FoldersOf(io::CBlock const & block);
io::CBlock BlockOf(Names const & names);
Names NamesOf(io::CBlock const & block);

/// Both replace their file in one step, or leave it as it was: then false, and reported.
bool WritePrivateList(LongFileName const & path, io::CBlock const & managedFiles, io::CBlock const & deletedFiles);
bool WriteCommittedList(LongFileName const & path, io::CBlock const & managedFiles);

} // namespace managed
