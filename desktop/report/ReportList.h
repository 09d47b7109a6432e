#pragma once

#include "desktop/report/ReportDefinition.h"

namespace io {
class CBlock;
}

namespace desktop {

/// The reports of a project in the order in which they were added; names are told apart without case.
class ReportList {
public:
  using Definitions = std::vector<ReportDefinition>;

  Definitions const & All() const { return m_definitions; }
  /// Null when there is none of that name.
  ReportDefinition const * Find(AString const & name) const;
  /// Gives the project other reports, and the caller those that it had.
  void Exchange(Definitions & definitions) { m_definitions.swap(definitions); }

  /// Item: one block "Report" for each.
  void Write(io::CBlock & block) const;
  /// Takes the place of all that is here.  What is no report is left out, and told in one line for people each.
  void Read(io::CBlock const & block, std::vector<AString> & notices);

private:
  Definitions m_definitions;
};

} // namespace desktop
