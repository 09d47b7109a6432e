#pragma once

#include "basekit/text/AString.h"
#include "viewkit/library/CStreamioLibrary.h"

#include <memory>

namespace library {
class InPlaceFile;
}

/// One library file, read and written in place: each save is at once part of the file.  The file is made by the
/// first save, or by ClearLibrary.
class CStreamioLibPrivate : public CStreamioLibrary {
public:
  CStreamioLibPrivate();
  ~CStreamioLibPrivate() override;

  void SetBinaryMode(bool binary) override;
  bool IsBinaryModeFile() const override;
  void SetPrecision(int digits) override;
  CStreamioLibraryStats GetFileStats() const override;
  LibIOReturn LoadDefinition(io::CBlock & block) override;
  LibIOReturn SaveDefinition(io::CBlock & block) override;
  LibIOReturn DeleteDefinition(AString const & name) override;
  /// With `convert`, blocks of the other form are written anew in the present one; else bytes are copied.
  LibIOReturn RewriteLibrary(bool convert) override;
  LibIOReturn SaveBlocks(io::CBlock & block) override;
  void SetLibPath(AString const & path, TMode mode) override;
  LibIOReturn DeleteBlocks(std::vector<AString> const & names) override;

  /// Attaches to the file, which may exist already.
  void SetLibPath(AString const & path);
  LibIOReturn ClearLibrary();
  /// Appends all the file's blocks as children, in the file's order.  A block that can't be read is left out and
  /// the result tells of it; with `stopAtDamage` nothing behind it is read.
  LibIOReturn LoadBlocks(io::CBlock & block, bool stopAtDamage);

  /// What the last operation that failed met, in words; empty when none did since the attach.
  AString const & LastError() const { return m_lastError; }

protected:
  /// The form for writing, given the form of the file.
  bool WritesBinary(bool fileIsBinary) const { return m_formIsSet ? m_binary : fileIsBinary; }
  LibIOReturn Fail(LibIOReturn result, AString const & text);

  bool m_formIsSet = false;
  bool m_binary = false;
  int m_precision = 16;
  AString m_lastError;

private:
  LibIOReturn Checked(LibIOReturn result);

  std::unique_ptr<library::InPlaceFile> m_file;
};
