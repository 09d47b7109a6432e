#pragma once

#include "desktop/product/quantity/IQuantityCatalogue.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace io {
class CBlock;
}

namespace desktop {

/// A catalogue that remembers what it was asked, so that a project file can tell it to another session: there the same
/// questions have their answers without any data being read.  Another question makes the product's own catalogue.
class KnownCatalogue : public IQuantityCatalogue {
public:
  explicit KnownCatalogue(std::unique_ptr<IQuantityCatalogue> made) : m_made(std::move(made)) {}

  /// Null when the block tells no catalogue.  The function gives the product's own, never null.
  static std::unique_ptr<KnownCatalogue> Read(io::CBlock const & block,
                                              std::function<std::unique_ptr<IQuantityCatalogue>()> make);
  void Write(io::CBlock & block) const;

  IQuantityCatalogue const & Made() const;
  /// What the product's own catalogue said doesn't hold any more; false when a project file told nothing beside it.
  bool ForgetMade();

  std::vector<QuantityReportType> const & GetReportTypes() const override;
  std::vector<AString> GetCategories(unsigned reportType) const override { return Made().GetCategories(reportType); }
  std::vector<AString> GetNames(AString const & category, unsigned reportType) const override {
    return Made().GetNames(category, reportType);
  }
  bool Describe(AString const & text, QuantityInfo & info) const override;

private:
  KnownCatalogue() = default;

  mutable std::unique_ptr<IQuantityCatalogue> m_made;
  std::function<std::unique_ptr<IQuantityCatalogue>()> m_make; ///< empty where it is made already
  using Answers = std::map<AString, std::optional<QuantityInfo>>;

  static void WriteQuantities(io::CBlock & block, Answers const & answers, std::vector<AString> & none);

  std::optional<std::vector<QuantityReportType>> m_types; ///< as they were read
  Answers m_told;                                         ///< likewise
  mutable Answers m_answers;                              ///< of the product's own
};

} // namespace desktop
