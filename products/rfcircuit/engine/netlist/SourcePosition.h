#pragma once

#include <memory>
#include <string>

namespace rf {

/** Where something stands in a netlist: the file as the user named it and the line, counted from one.
    A position without a file is that of something that was built in memory.  Copies share the file's name. */
struct SourcePosition {
  std::shared_ptr<std::string const> file;
  int line = 0;

  std::string FileName() const { return file ? *file : std::string(); }
};

} // namespace rf
