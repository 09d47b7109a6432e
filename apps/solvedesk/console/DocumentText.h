#pragma once

#include "basekit/text/AString.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>

namespace solvedesk {

/// A JSON document that is written from its beginning to its end, for results of a hundred thousand parts: to the
/// letter the text that a tree of the same parts gives, without the tree.  It begins as an object that is open, with
/// the schema_version; names are left out for the elements of an array, and hold no character that would need an
/// escape.
class DocumentText {
public:
  DocumentText();

  void BeginObject(std::string_view name = {}) { Begin(name, '{'); }
  void EndObject() { End('}'); }
  void BeginArray(std::string_view name = {}) { Begin(name, '['); }
  void EndArray() { End(']'); }
  void Text(std::string_view name, AString const & value);
  void Flag(std::string_view name, bool value);
  void Number(std::string_view name, long value);
  /// A small tree.
  void Value(std::string_view name, nlohmann::ordered_json const & value);
  /// Its members, in their order.
  void Members(nlohmann::ordered_json const & object);

  /// Ends the document.
  std::string Take() &&;

private:
  void Begin(std::string_view name, char bracket);
  void End(char bracket);
  void Next(std::string_view name);
  void NewLine();

  std::string m_text;
  std::size_t m_depth = 0;
  bool m_isFirst = true;
};

} // namespace solvedesk
