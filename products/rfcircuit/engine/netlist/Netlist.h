#pragma once

#include "products/rfcircuit/engine/netlist/SourcePosition.h"
#include "products/rfcircuit/engine/sweep/FrequencySweep.h"
#include "products/rfcircuit/engine/sweep/SweepFiles.h"
#include "products/rfcircuit/engine/sweep/SweepMethod.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace rf {

struct NetlistContent;

/** Values for design variables, by name without case. */
using Overrides = std::map<std::string, double>;

/** A top-level `.param` of the main file whose value is a plain number: what a study may vary. */
struct DesignVariable {
  std::string name; ///< as written
  double value = 0;
  std::string text; ///< the value as written, e.g. 4.7p
  SourcePosition where;
};

/** A `.sp` line: `SP1` is the first, `SP2` the second. */
struct SweepLine {
  std::string name;
  std::string text;
  SourcePosition where;
  FrequencySweep sweep;
  SweepMethod method;
  SweepFiles files;
};

/** A `.tran` line, kept as it stands for whoever understands it. */
struct TransientLine {
  std::string text;
  SourcePosition where;
};

/** What was read but does nothing, and may surprise its writer: a command for other analyses, once for each kind, or a
    title that looks like a statement (its `thing` is empty). */
struct NetlistNote {
  SourcePosition where;
  std::string thing; ///< the command: `.temp`
  std::string message;
  std::string statement; ///< the whole line

  bool IsAboutTitle() const { return thing.empty(); }
  /** One line, `FILE:LINE: thing: message`. */
  std::string Text() const;
};

/** A netlist as read: parsed, not yet evaluated.  Immutable; copies share their content. */
class Netlist {
public:
  explicit Netlist(std::shared_ptr<NetlistContent const> content);

  /** The first line of the main file. */
  std::string const & Title() const;
  std::string const & FileName() const;
  /** All files it was read from, the main one first, each once: what to watch for changes. */
  std::vector<std::string> const & Files() const;
  /** In the order of the file. */
  std::vector<DesignVariable> const & DesignVariables() const;
  std::vector<TransientLine> const & Transients() const;
  /** The one about the title first, then in the order of the file. */
  std::vector<NetlistNote> const & Notes() const;

  /** Equal for netlists that give the same circuit for the same design variables: their values, sweeps, commands of
      other analyses, titles and comments don't count. */
  std::uint64_t Fingerprint() const;

  /** The frequency sweeps, in the order of the file; their numbers may be expressions of the design variables. */
  std::vector<SweepLine> Sweeps(Overrides const & overrides = {}) const;

  NetlistContent const & Content() const { return *m_Content; }

private:
  std::shared_ptr<NetlistContent const> m_Content;
};

/** Reads a netlist with all that it includes.  Throws NetlistError. */
Netlist ReadNetlist(std::filesystem::path const & path);

/** The same from memory; includes are relative to the folder of `fileName`, which errors name. */
Netlist ReadNetlistText(std::string const & text, std::string const & fileName);

} // namespace rf
