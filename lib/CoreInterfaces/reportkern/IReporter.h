#pragma once

#include "CoreInterfaces/ReportForward.h"

enum class TabPage : int;

/// A report dialog as it was filled in.
class IReporter {
public:
  virtual bool Is3D() const = 0;
  virtual IDesignInstance * GetIDesignInstance() const = 0;
  virtual SubsweepVector const & GetSubsweepVector() const = 0;
  /// Null when the dialog has no such page.
  virtual IReporterTab * GetTab(TabPage page) const = 0;

protected:
  ~IReporter() = default;
};
