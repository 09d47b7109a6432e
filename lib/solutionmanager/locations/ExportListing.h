#pragma once

#include "basekit/text/AString.h"

#include <vector>

/// The lists of an export of one variation, filled by one class of stores, which traces in its own words.
class ExportListing {
public:
  /// Formats: of the variation alone, and of a location and the variation.
  struct Words {
    wchar_t const * nothing;
    wchar_t const * file;
    wchar_t const * dir;
  };

  ExportListing(Words const & words, bool isFile, std::vector<AString> & files, std::vector<AString> & dirs,
                AString const & variation)
      : m_words(words), m_isFile(isFile), m_files(files), m_dirs(dirs), m_variation(variation) {}

  void NothingFound() const;
  void Add(AString const & location) const;

private:
  Words const & m_words;
  bool m_isFile;
  std::vector<AString> & m_files;
  std::vector<AString> & m_dirs;
  AString m_variation;
};
