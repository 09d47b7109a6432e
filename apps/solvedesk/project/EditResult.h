#pragma once

#include "apps/solvedesk/console/Console.h"
#include "desktop/report/LiveReports.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace desktop {
class Session;
struct EditChange;
} // namespace desktop

namespace solvedesk {

/// What an edit did to solved data, told in the same way by every verb that edits.
class EditResult {
public:
  /// Before the edit.
  explicit EditResult(desktop::Session & session);
  /// After it: the changes that it made, and how many points are valid now, and
  /// which reports that were shown no longer hold.
  void Print(OutputOptions const & output, std::string const & project, bool isChanged,
             std::string const & unchanged = "nothing to change") const;
  /// The same with items of the verb's own in front of the others.
  void Print(OutputOptions const & output, std::string const & project, bool isChanged, std::string const & unchanged,
             nlohmann::ordered_json const & items) const;
  /// The changes of several steps.
  void PrintChanges(OutputOptions const & output, std::string const & project,
                    std::vector<desktop::EditChange> const & changes, nlohmann::ordered_json const & items) const;

private:
  void Print(OutputOptions const & output, std::string const & project,
             std::vector<desktop::EditChange> const & changes, std::string text, bool isChanged,
             nlohmann::ordered_json const & items) const;

  desktop::Session & m_session;
  std::size_t m_validBefore;
  std::vector<desktop::LiveReports::State> m_reportsBefore;
};

/// "variable C: 1 -> 2".
std::string ChangeText(desktop::EditChange const & change);
nlohmann::ordered_json ChangesJson(std::vector<desktop::EditChange> const & changes);

} // namespace solvedesk
