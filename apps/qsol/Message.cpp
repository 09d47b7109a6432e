#include "apps/qsol/Message.h"

#include "apps/qsol/Output.h"

#include <fcntl.h>
#include <unistd.h>

namespace qsol {

void WriteMessage(int descriptor, std::string const & text) noexcept {
  try {
    std::string line = "qsol: " + text;
    while (!line.empty() && line.back() == '\n')
      line.pop_back();
    for (char & character : line)
      if (static_cast<unsigned char>(character) < 0x20 || character == 0x7f)
        character = ' ';
    line += '\n';
    static_cast<void>(WriteWhole(descriptor, line));
  } catch (...) {
    static_cast<void>(WriteWhole(descriptor, "qsol: out of memory\n"));
  }
}

void KeepStandardDescriptors() noexcept {
  for (int const descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(descriptor, F_GETFD) != -1)
      continue;
    // The lowest free number is this one; open for reading only, it can't be written.
    if (::open("/dev/null", O_RDONLY) == -1)
      return;
  }
}

} // namespace qsol
