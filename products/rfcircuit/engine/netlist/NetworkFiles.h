#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace rf {

struct ElementStatement;
struct SParameterTable;

/** The Touchstone files that the N lines of a netlist name; each is read once. */
class NetworkFiles {
public:
  /** Gives an N element the data of its file, which is looked up beside the file that has the line, and tells a
      checksum of the data.  NetlistError for a file that can't be read, or whose ports the nodes don't fit. */
  std::uint64_t Fill(ElementStatement & element);

  /** In the order in which they were first named. */
  std::vector<std::string> const & Files() const { return m_Files; }

private:
  struct Entry {
    std::shared_ptr<SParameterTable const> data;
    std::uint64_t checksum = 0;
  };

  Entry const & Read(std::string const & path, ElementStatement const & element);

  std::map<std::string, Entry> m_Entries;
  std::vector<std::string> m_Files;
};

} // namespace rf
