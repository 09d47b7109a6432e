#pragma once

#include "products/rfcircuit/engine/netlist/LogicalLine.h"
#include "products/rfcircuit/engine/netlist/SourceText.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace rf {

/** Feeds the statements of a file and of all that it includes to a receiver, in order.
    Includes are looked up beside the file that includes them; circles, deep nesting and an excess of text are refused.
    Of a `.control` block, another program's script, the first line alone is fed; `.end` ends the file it stands in. */
class IncludeReader {
public:
  using Receiver = std::function<void(LogicalLine const & line, bool inMainFile)>;

  explicit IncludeReader(Receiver receiver) : m_Receiver(std::move(receiver)) {}

  /** Feeds a text that was read already; returns its title, the first line. */
  std::string FeedMain(std::string const & text, std::filesystem::path const & path);

  std::vector<std::string> const & Files() const { return m_Files; }

private:
  void Feed(std::string const & text, std::filesystem::path const & path, int skipLines);
  void Include(LogicalLine const & line, std::filesystem::path const & includer);
  void NoteFile(std::string const & name);

  Receiver m_Receiver;
  std::vector<std::filesystem::path> m_Open;
  std::vector<std::string> m_Files;
  std::uintmax_t m_BytesLeft = LARGEST_NETLIST_IN_BYTES;
  int m_Includes = 0;
};

} // namespace rf
