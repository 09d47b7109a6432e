#pragma once

#include "basekit/text/AString.h"

#include <optional>
#include <string>

class LongFileName;

namespace rfcircuit {

class NetworkData;
class RfVariation;

/// What the comments of a Touchstone file say of the data, and how it is written.
struct TouchstoneLabels {
  AString solution;
  AString variation;
  int digits = 15;
  /// Ohm: the file shows the network from this impedance at all ports.
  std::optional<double> z0{};
};

/// S-parameters as Touchstone 1, or 2 where the ports differ in their reference impedance, with the variation's text as
/// a comment and no date: the same data gives the same text.  False with a one-line error when the network can't be
/// renormalized.
bool MakeTouchstoneText(NetworkData const & data, TouchstoneLabels const & labels, std::string & text, AString & error);

/// Whether the text shows other S-parameters than those of the data.
bool IsRenormalizing(NetworkData const & data, TouchstoneLabels const & labels);

/// The extension for the data's number of ports: ".s2p".
AString TouchstoneExtension(NetworkData const & data);

/// Writes the data of a variation that has it.  False with a one-line error, and no file.
bool ExportTouchstone(RfVariation const & variation, LongFileName const & fileWithoutExtension, int digits,
                      LongFileName & written, AString & error);

} // namespace rfcircuit
