#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace desktop {
class Session;
}

namespace solvedesk {

/// What opening a project took over after a crash and what it dropped, for people and as a document.
class RecoveryText {
public:
  /// `isRehearsal`: it was tried out on a copy.
  RecoveryText(desktop::Session & session, bool isRehearsal);

  std::string const & Text() const { return m_text; }
  nlohmann::ordered_json const & Document() const { return m_document; }

private:
  void AddTakenOver(desktop::Session & session, bool isRehearsal);
  void AddDropped(desktop::Session & session, bool isRehearsal);

  std::string m_text;
  nlohmann::ordered_json m_document;
};

} // namespace solvedesk
