#pragma once

#include "CoreInterfaces/reportkern/IReporter.h"
#include "desktop/report/ReporterTab.h"
#include "plotkit/sweep/SubsweepVector.h"

namespace desktop {

/// A report as a filled-in dialog: one curve's expressions over points that were chosen already.
class Reporter final : public IReporter {
public:
  Reporter(ISimDataExtractor & extractor, SimValueContext const & context, IDesignInstance * instance,
           SubsweepVector const & points, AString const & x, AString const & y)
      : m_instance(instance), m_points(points), m_context(extractor, context, {}), m_x(extractor, context, {x}),
        m_y(extractor, context, {y}) {}

  bool Is3D() const override { return false; }
  IDesignInstance * GetIDesignInstance() const override { return m_instance; }
  SubsweepVector const & GetSubsweepVector() const override { return m_points; }
  IReporterTab * GetTab(TabPage page) const override;

private:
  IDesignInstance * m_instance;
  SubsweepVector m_points;
  mutable ReporterTab m_context;
  mutable ReporterTab m_x;
  mutable ReporterTab m_y;
};

} // namespace desktop
