#pragma once

#include "CoreInterfaces/reportkern/IReporterTab.h"
#include "plotkit/simvalue/SimValueContext.h"

class ISimDataExtractor;

namespace desktop {

/// One page of a report: expressions, as an extractor understands them now.  It owns neither extractor nor design.
class ReporterTab final : public IReporterTab {
public:
  ReporterTab(ISimDataExtractor & extractor, SimValueContext const & context, std::vector<AString> const & texts)
      : m_extractor(extractor), m_context(context), m_texts(texts) {}

  SimValueContext const & GetSimValueContext() const override { return m_context; }
  /// Of the texts that make sense now.
  int GetTraceComponents(std::vector<TraceComponent *> & components) const override;
  int GetType() const override { return 0; }
  AString GetText() const override { return AString(); }

private:
  ISimDataExtractor & m_extractor;
  SimValueContext m_context;
  std::vector<AString> m_texts;
};

} // namespace desktop
