#pragma once

#include "basekit/file/LongFileName.h"

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

namespace desktop {

class Session;
struct ProjectRecord;

/// Takes one design point out of an open project, which it leaves as it is: a project of its own whose design has the
/// point's values and whose results are the point's alone, in all setups and solutions.  Blocks of former versions and
/// of stale data come along; result files are those of each solution's present version, so that files of stale data
/// stay behind.  The session outlives this; failures are Errors, and what was written by then is the caller's to
/// remove.
class PointExport {
public:
  enum class State {
    kSaved,  ///< of a session that shows what was saved last
    kPresent ///< with the work that is unsaved
  };

  /// What the point has in one solution.
  struct Part {
    AString setup;
    AString solution;
    bool isValid = false;
  };

  /// The variation as a solution knows it; see FindPoint.
  PointExport(Session & session, AString const & variation, State state);

  /// The solved variation that equals a text, empty when there is none; and all of them, once each.
  static AString FindPoint(Session & session, AString const & variation);
  static std::vector<AString> SolvedVariations(Session & session);

  /// Where the project has data of the point, in the order of setups and solutions.
  std::vector<Part> Parts() const;
  /// The length of the library that the saved state is cut out of.
  std::uint64_t LibraryLength() const;
  /// Makes the project, of the same name, in a folder, and reads it again: all blocks of the point are there, bit for
  /// bit, none of another point, and all its files at their full length.  An Error of kind kLocked when another process
  /// saved the project since this object was made: parts of both states may then have met.
  void Write(LongFileName const & folder);
  /// Of what Write wrote: blocks of the point, and its result files and folders.
  int CountBlocks() const { return static_cast<int>(m_blocks.size()); }
  int CountFiles() const { return m_files; }
  /// Why the project that Write made has no copy of the source, but names the original by its full path; empty when it
  /// has one.
  AString const & WhyNoSources() const { return m_whyNoSources; }

private:
  /// What a save changes.
  struct Saved {
    long generation = 0;
    std::uint64_t length = 0;
    std::uint64_t node = 0;
    bool operator==(Saved const &) const = default;
  };

  std::optional<Saved> LookAtSaved() const;
  void WriteProject(LongFileName const & folder);
  bool AssumesSavedState() const;
  void WriteResults(LongFileName const & results);
  ProjectRecord MakeRecord() const;
  void TakeValuesOfPoint(ProjectRecord & record) const;
  void SaveWhatOpeningAdds(LongFileName const & file) const;
  void Check(LongFileName const & file) const;
  void CheckFiles(LongFileName const & folder);
  void CheckCopy(LongFileName const & source, LongFileName const & copy) const;
  void CheckNothingForeign(Session & exported) const;
  [[noreturn]] void RefuseLink(LongFileName const & file) const;
  [[noreturn]] void RefusePoint(AString const & what) const;

  Session & m_session;
  AString m_variation;
  State m_state;
  std::optional<Saved> m_saved;
  std::vector<AString> m_blocks; ///< real names
  std::set<AString> m_foreign;   ///< internal names of blocks of other points
  int m_files = 0;
  AString m_whyNoSources;
};

} // namespace desktop
