#pragma once

#include "products/rfcircuit/engine/network/SParameterTable.h"

#include <cstdint>
#include <string>
#include <vector>

namespace rf {

/** How the file says it, before anything was converted; what it leaves out stands as the format's default. */
struct TouchstoneFacts {
  enum class Format { RealImaginary, MagnitudeDegrees, DecibelDegrees };
  enum class Layout { Full, Lower, Upper };

  std::string version = "1.0";       ///< 1.0, 1.1 (several impedances in the option line), 2.0 or 2.1
  std::string frequencyUnit = "GHz"; ///< Hz, kHz, MHz or GHz
  char parameters = 'S';             ///< S, Y, Z, G or H
  Format format = Format::MagnitudeDegrees;
  Layout layout = Layout::Full;
  bool isTwoPortOrder21First = true; ///< 11 21 12 22; else 11 12 21 22
  bool hasOptionLine = false;
  std::size_t noiseLines = 0; ///< of the noise data that was skipped
  std::uint64_t lines = 0;
  std::uint64_t bytes = 0;
};

/** Something that a reader should know but that did not stop the reading; line 0: of the file as a whole. */
struct TouchstoneNote {
  std::size_t line = 0;
  std::string text;
};

/** A Touchstone file, read: S-parameters whatever the file holds, in the usual order of rows and columns, over
    frequencies in Hz. */
struct TouchstoneData {
  std::string name;                     ///< of the file, as the caller gave it
  SParameterTable network;              ///< at least one frequency; frequencies ascend strictly, values are finite
  std::vector<std::string> comments;    ///< without their `!` and blanks around; the first 64 KiB of them
  std::vector<std::string> information; ///< lines between [Begin Information] and [End Information]; as many
  TouchstoneFacts facts;
  std::vector<TouchstoneNote> notes; ///< what was skipped or assumed
};

} // namespace rf
