#pragma once

#include "basekit/file/LongFileName.h"

#include <optional>
#include <string>

namespace desktop {

/// The bytes of a file; nothing when it is not there.  An Error of kind kStorage when it can't be read.
std::optional<std::string> BytesOf(LongFileName const & file);

/// Keeps the content that a file is to have, or that it is not there, and exchanges that for what is there: the same
/// step leads forth and back.
class FileExchange {
public:
  FileExchange(LongFileName file, std::optional<std::string> content)
      : m_file(std::move(file)), m_content(std::move(content)) {}
  /// An Error of kind kStorage, and nothing changed, when that fails.
  void Exchange();

private:
  LongFileName m_file;
  std::optional<std::string> m_content;
};

} // namespace desktop
