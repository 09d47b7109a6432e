#pragma once

#include "basekit/io/CBlock.h"
#include "basekit/text/AString.h"

#include <vector>

namespace desktop {

/// A design variable that a source defines, with its value as variations are to show it.
struct SourceVariable {
  AString name;
  AString value;
};

/// A setup that a source asks for.  The settings are the product's own: it wrote them and reads them.
struct SourceSetup {
  AString name;
  AString typeName;
  io::CBlock settings{L"Settings"};
};

/// What a product found in a source (a netlist, a template).
struct SourceDescription {
  /// Tells sources apart by what is solved from them, and by nothing else: equal for two that differ in values of
  /// variables, in setups or in remarks alone.  Empty: every change of a file counts.
  AString fingerprint;
  std::vector<SourceVariable> variables;
  std::vector<SourceSetup> setups;
  /// All files that were read, the one that was named first; a change of any of them changes the source.
  std::vector<AString> files;
  /// One line for people: "2 ports, 9 elements".
  AString summary;
  /// What the source holds that may surprise its writer, one line each, with its place: "a.cir:7: .temp: ignored".
  std::vector<AString> notes;
};

} // namespace desktop
