#pragma once

#include "products/rfcircuit/engine/network/Circuit.h"
#include "products/rfcircuit/engine/network/SMatrix.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneError.h"

#include <filesystem>
#include <string>
#include <vector>

namespace rf {

struct TouchstoneOptions {
  enum class Format { RealImaginary, MagnitudeDegrees, DecibelDegrees };
  Format format = Format::RealImaginary;
  int digits = 15; ///< significant ones of the S-parameters, 1 to 17
};

/** Writes S-parameters as Touchstone 1: option line `# Hz S RI R 50`, two-port columns in the order 11 21 12 22, at
   most four pairs a line.  Ports of different reference impedances take version 2, with `[Reference] 50 200`.  Header
   lines become comments.  Frequencies are in Hz, ascend, and are written so that they read back exactly.  In decibels a
   magnitude of zero is written as -400.

    The file is made beside the target and renamed, so that the target is the old or the new one, whole.  It is not
    synced.  Throws TouchstoneError; the target is untouched then. */
void WriteTouchstone(std::filesystem::path const & path, std::vector<std::string> const & header,
                     std::vector<Port> const & ports, std::vector<double> const & frequencies,
                     std::vector<SMatrix> const & matrices, TouchstoneOptions const & options = {});

/** Puts a text that TouchstoneText made in its place, in the same way. */
void WriteTouchstoneText(std::filesystem::path const & path, std::string const & text);

/** The same as text; `name` is whom errors are about. */
std::string TouchstoneText(std::string const & name, std::vector<std::string> const & header,
                           std::vector<Port> const & ports, std::vector<double> const & frequencies,
                           std::vector<SMatrix> const & matrices, TouchstoneOptions const & options = {});

/** The extension for a number of ports: `.s2p`. */
std::string TouchstoneExtension(std::size_t ports);

} // namespace rf
