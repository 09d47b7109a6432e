#pragma once

#include "desktop/command/EditLog.h"

#include <map>

class BaseSimulationSetup;
namespace io {
class CBlock;
}

namespace desktop {

class Session;

/// What solved data depends on, at one moment: the source, the settings of each setup, and the versions that all
/// objects have.
class DesignState {
public:
  explicit DesignState(Session & session);

  /// What is solved from it; see SolvedSource.
  AString const & Source() const { return m_source; }
  AString const & SourceDate() const { return m_sourceDate; }
  AString const & SourceFiles() const { return m_sourceFiles; }
  AString const & Variation() const { return m_variation; }
  std::map<VersionedObject, long> const & Versions() const { return m_versions; }
  /// In words; empty for a setup that was not there.
  AString SettingsOf(long setupID) const;

private:
  AString m_source;
  AString m_sourceDate;
  AString m_sourceFiles;
  AString m_variation;
  std::map<VersionedObject, long> m_versions;
  std::map<long, AString> m_settings;
};

/// What is solved from: the source, and the values that are its own.
AString SolvedSourceOf(Session & session);
/// A setup's settings as its jobs get them.
io::CBlock SettingsOf(Session & session, BaseSimulationSetup const & setup);
AString SettingsWords(Session & session, BaseSimulationSetup const & setup);

} // namespace desktop
