#pragma once

#include "basekit/command/KelvroCommandInfo.h"
#include "basekit/text/AString.h"

#include <vector>

/// The properties that a command created, deleted or edited.
class PropertyCommandInfo : public KelvroCommandInfo {
public:
  /// Bits of a record's flag word.
  enum PropertyFlag : unsigned {
    kVariableProp = 1u << 0,
    kEdited = 1u << 16,
    kDeleted = 1u << 22,
    kCreated = 1u << 23,
  };
  class Property {
  public:
    Property(AString const & name, unsigned flags) : m_name(name), m_flags(flags) {}
    AString const & GetName() const { return m_name; }
    unsigned GetFlags() const { return m_flags; }
    bool IsVariableProp() const { return (m_flags & kVariableProp) != 0; }

  private:
    AString m_name;
    unsigned m_flags;
  };

  PropertyCommandInfo() : KelvroCommandInfo(kPropertyInfo, kNoSubType) {}

  void AddProperty(AString const & name, unsigned flags) { m_properties.emplace_back(name, flags); }
  std::vector<Property> const & GetProperties() const { return m_properties; }
  bool IsAnyPropDeleted() const { return HasAny(kDeleted); }
  bool IsAnyPropCreated() const { return HasAny(kCreated); }
  bool IsAnyPropEdited() const { return HasAny(kEdited); }

private:
  bool HasAny(unsigned flag) const;

  std::vector<Property> m_properties;
};
