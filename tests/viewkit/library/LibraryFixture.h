#pragma once

#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_named_value.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"
#include "viewkit/library/CStreamioLibWritePrivate.h"

#include <gtest/gtest.h>
#include <string>

/// A folder with libraries, and verbs for what users of a library do.
class LibraryFixture : public testing::Test {
protected:
  using Library = CStreamioLibWritePrivate;

  AString Path(wchar_t const * name = L"a.qsol") const;
  static AString PrivateOf(AString const & path) { return path + L"_priv"; }

  /// A block with one value under "Text" and some numbers.
  static io::CBlock Block(AString const & name, AString const & text);
  static CStreamioLibrary::LibIOReturn Save(CStreamioLibrary & library, AString const & name, AString const & text);
  /// The text of the block, or "<none>", "<damaged>", "<failed>".
  static AString Load(CStreamioLibrary & library, AString const & name);
  static io::CBlock Batch(std::initializer_list<std::pair<wchar_t const *, wchar_t const *>> blocks);

  static std::string Bytes(AString const & path);
  static void SetBytes(AString const & path, std::string const & bytes);
  /// Copies the two files of a library that is still at work to another name: what a crash would leave.
  void Crash(AString const & path, AString const & to) const;
  static std::string Narrow(AString const & path);
  /// A writer looks at the names of its files anew after two milliseconds.
  static void LetAMomentPass();

  support::TemporaryFolder m_folder;
};
