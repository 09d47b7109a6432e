#pragma once

#include "CoreInterfaces/IValueParser.h"
#include "plotkit/simvalue/SimValueContext.h"

#include <map>
#include <memory>
#include <vector>

class ISimDataExtractorForReports;
class SimValue;

namespace desktop {

/// Reads the words of a report's expressions as quantities of one solution, as its view for reports knows them.  It
/// owns the sim values that it gives out, so that it outlives the expressions that it bound.
class SetupParser final : public IValueParser {
public:
  SetupParser(ISimDataExtractorForReports const & view, SimValueContext const & context, unsigned reportType);
  ~SetupParser() override;

  ValueBase * ParseText(AString const & text) override;
  ValueState GetValueStateFromText(AString const & text) override;
  /// Those that were asked for, in the order of their texts.
  std::vector<AString> GetQuantities() const;

private:
  ISimDataExtractorForReports const & m_view;
  SimValueContext m_context;
  unsigned m_reportType;
  std::map<AString, std::unique_ptr<SimValue>> m_simValues;
};

} // namespace desktop
