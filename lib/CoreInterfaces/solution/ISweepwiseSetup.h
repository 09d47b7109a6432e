#pragma once

/// A product's own data of a parametric setup; opaque here.
class IProdSwiseSetupData {
public:
  virtual ~IProdSwiseSetupData() = default;
};

/// A parametric setup of the add-on.
class ISweepwiseSetup {
public:
  virtual ~ISweepwiseSetup() = default;
  virtual IProdSwiseSetupData const * GetIProdSwiseSetupData() const = 0;
};
