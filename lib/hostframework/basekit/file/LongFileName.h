#pragma once

#include "basekit/text/AString.h"

/// The path of a file or folder as text; '/' separates its parts.  A path that ends in '/' is a directory name.
/// Nothing is resolved or normalised: what went in comes out of FilePath().  Only Exists() and IsDirectory() look
/// at the disk.
class LongFileName {
public:
  LongFileName() = default;
  LongFileName(AString const & path) : m_path(path) {}
  LongFileName(wchar_t const * path) : m_path(path) {}
  /// The name inside the directory.
  LongFileName(LongFileName const & directory, AString const & name);

  AString const & FilePath() const { return m_path; }
  /// The directory with its trailing '/'; empty for a bare name, the path itself for a directory name.
  AString DirPath() const;
  /// "a" of "/d/a.qsol".
  AString Name() const;
  /// "a.qsol" of "/d/a.qsol"; of a directory name the last part: "d" of "/d/".
  AString NameAndExtension() const;
  /// ".qsol" of "/d/a.qsol", with its dot; empty when there is none.  A leading dot starts a name, no extension.
  AString Extension() const;
  bool IsEmpty() const { return m_path.empty(); }

  bool Exists() const;
  /// A directory name, or the path of a directory that exists.
  bool IsDirectory() const;
  /// Appends the '/' that makes it a directory name, unless it has one or is empty.
  void MakeItDirectory();

private:
  AString m_path;
};

/// Joins with exactly one '/' between; an empty side adds nothing.
LongFileName operator+(LongFileName const & directory, AString const & tail);
inline bool operator==(LongFileName const & a, LongFileName const & b) { return a.FilePath() == b.FilePath(); }
inline bool operator!=(LongFileName const & a, LongFileName const & b) { return !(a == b); }
inline bool operator<(LongFileName const & a, LongFileName const & b) { return a.FilePath() < b.FilePath(); }
