#pragma once

#include "products/rfcircuit/engine/touchstone/TouchstoneWriter.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace bench {

struct FileCase {
  std::string name;
  std::size_t ports = 1;
  rf::TouchstoneOptions options;
  bool hasSeveralImpedances = false; ///< version 2
  bool isInGigahertz = false;
};

std::vector<FileCase> FileCases();

/// Writes a file of at least so many bytes into the folder; its path.
std::string MakeFile(std::string const & folder, FileCase const & fileCase, std::uint64_t bytes);

/// The whole text of a file.
std::string TextOf(std::string const & path);

/// What a plain loop of std::from_chars makes of all numbers in the text: nothing but passing blanks and adding up.
struct PlainSum {
  std::size_t numbers = 0;
  double sum = 0;
};
PlainSum SumOfNumbers(std::string const & text);

/// Reads all bytes of a file through a buffer of the given size, and does nothing with them.
std::uint64_t BytesRead(std::string const & path, std::size_t bufferSize);

} // namespace bench
