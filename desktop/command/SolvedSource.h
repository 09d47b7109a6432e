#pragma once

#include "basekit/text/AString.h"
#include "desktop/command/EditLog.h"

#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace desktop {

struct SourceBase;

/// What is solved from a source, as one text: its fingerprint, and the values of those of its variables that the design
/// does not have, as these count like the circuit does: "2acec8fc97709ad5 with lscale=1".
AString SolvedSource(SourceBase const & base, std::function<bool(AString const & name)> const & isOfDesign);
/// The value that the source itself gives to a variable; nothing for a name that it doesn't know.
std::optional<AString> ValueInSource(SourceBase const & base, AString const & name);
/// Names and values that the source has and the design has not, by the source's spelling.
std::vector<std::pair<AString, AString>> FixedValues(SourceBase const & base,
                                                     std::function<bool(AString const & name)> const & isOfDesign);

/// A variable of the source that stops being one of the design, or becomes one: what the log knows of former versions
/// follows, so that an edit back finds the data that was solved with the same value, and no other.
class FixedValueInLog {
public:
  FixedValueInLog(AString name, AString value) : m_name(std::move(name)), m_value(std::move(value)) {}
  /// The value is the source's from here on.
  void Fix(EditLog & log);
  /// It stands in the texts of variations: what was solved with another value bears a wrong text, and counts for
  /// nothing until it is fixed again.
  void Release(EditLog & log);

private:
  AString m_name;
  AString m_value;
  std::map<std::pair<VersionedObject, long>, AString> m_lost;
};

} // namespace desktop
