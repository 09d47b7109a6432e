#pragma once

#include "basekit/text/AString.h"

class LongFileName;

/// What a copy or move does with a target that is there already.
enum BehaviorIfSourceExists {
  kFailIfExists = 0,
  /// The target is replaced in one step: others see the old or the new file, never a part.
  kOverwrite = 1,
  /// As kOverwrite, and a target that is write-protected is replaced too.
  kOverwriteReadOnly = 2,
};

/// Operations on files and folders.  All return true on success and never throw; the text of the last failure is
/// LFN_LastError().
bool LFN_Exists(LongFileName const & path);
bool LFN_IsDirectory(LongFileName const & path);
/// Copies a file, or a folder with its content when `from` is a folder; file modes go along.
bool LFN_Copy(LongFileName const & from, LongFileName const & to, BehaviorIfSourceExists behavior);
/// Renames, and where the target lies on another disk copies and removes.
bool LFN_Move(LongFileName const & from, LongFileName const & to, BehaviorIfSourceExists behavior);
/// Fails when the target exists.
bool LFN_Rename(LongFileName const & from, LongFileName const & to);
bool LFN_DeleteFile(LongFileName const & path);
/// A file, or a folder with all that it holds; symbolic links are removed, not followed.
bool LFN_Delete(LongFileName const & path);
/// Refuses a folder that is reached by a link.
bool LFN_DeleteDirectoryContents(LongFileName const & path);
/// True also when the folder is there already.
bool LFN_CreateDirectory(LongFileName const & path);
bool LFN_CreateDirectoryAndParents(LongFileName const & path);
/// Copies what the folder holds into another that exists or is made; files that stand there are replaced when
/// `overwrite` is true and else left as they are.  Links in either folder are neither copied nor followed; the others
/// are copied all the same, and the result is false.  A folder is not copied to a place inside it.
bool LFN_CopyDirectoryContents(LongFileName const & from, LongFileName const & to, bool overwrite);
AString const & LFN_LastError();
/// The path from the root, counted from the current folder, without "." and ".." in it.  Links are not followed.
LongFileName LFN_AbsolutePath(LongFileName const & path);
/// The same with all links of the part that stands on the disk followed.
LongFileName LFN_ResolvedPath(LongFileName const & path);

/// Makes a name in the folder that nothing bears yet: prefix, a number, extension.  False when the folder is not
/// there.  `fileName` takes the full path; `extension` may come with or without its dot.
bool KvroGetTempFileName(LongFileName const & directory, AString const & prefix, AString const & extension,
                         AString & fileName);
