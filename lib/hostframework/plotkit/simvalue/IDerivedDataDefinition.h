#pragma once

/// Tells which derived data is meant; products have definitions of their own.
class IDerivedDataDefinition {
public:
  virtual ~IDerivedDataDefinition() = default;
  /// The caller owns the copy.
  virtual IDerivedDataDefinition * Clone() const = 0;
};

/// What else a product wants to know when an instance is loaded.
class IExtendedLoadInfo {
public:
  virtual ~IExtendedLoadInfo() = default;
  virtual IExtendedLoadInfo * Clone() const = 0;
};
