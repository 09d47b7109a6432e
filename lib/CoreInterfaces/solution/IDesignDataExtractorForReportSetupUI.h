#pragma once

/// What a product's extractor tells the dialog that sets up reports.
class IDesignDataExtractorForReportSetupUI {
public:
  virtual ~IDesignDataExtractorForReportSetupUI() = default;
};
