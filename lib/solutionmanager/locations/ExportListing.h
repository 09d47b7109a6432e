#pragma once

#include "basekit/text/AString.h"

#include <map>
#include <vector>

/// The lists of an export of one variation, filled by one class of stores, which names itself in the traces.
class ExportListing {
public:
  ExportListing(wchar_t const * className, bool isFile, std::vector<AString> & files, std::vector<AString> & dirs,
                AString const & variation);

  void NothingFound() const;
  void Add(AString const & location) const;

private:
  AString m_where;
  bool m_isFile;
  std::vector<AString> & m_files;
  std::vector<AString> & m_dirs;
  AString m_variation;
};
