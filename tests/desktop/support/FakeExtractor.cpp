#include "tests/desktop/support/FakeExtractor.h"

#include "basekit/value/Value.h"
#include "desktop/product/quantity/ISolvedQuantities.h"
#include "desktop/product/quantity/QuantityColumn.h"
#include "tests/desktop/support/FakeProduct.h"

#include <numeric>

namespace support {

namespace {

using desktop::QuantityColumn;

ValueState StateOf(val::ParameterType type) { return {Units::kNoUnits, Units::kNoUnitType, 1, type}; }

std::vector<double> Frequencies(std::size_t count) {
  std::vector<double> values(count);
  std::iota(values.begin(), values.end(), 1.0);
  return values;
}

class Catalogue : public desktop::IQuantityCatalogue {
public:
  explicit Catalogue(std::size_t count) {
    m_types.resize(2);
    m_types[0].number = FakeExtractor::kOverFrequency;
    m_types[0].name = L"Over frequency";
    m_types[0].axis = val::kIntrinsicFrequency;
    m_types[0].axisState = {Units::kHertz, Units::kFrequency, 1, val::kReal};
    m_types[0].axisValues = Frequencies(count);
    m_types[1].number = FakeExtractor::kNumbers;
    m_types[1].name = L"Numbers";
    for (auto & type : m_types)
      type.displayTypes = {rep::DisplayType{}};
  }
  std::vector<desktop::QuantityReportType> const & GetReportTypes() const override { return m_types; }
  std::vector<AString> GetCategories(unsigned) const override { return {L"All"}; }
  std::vector<AString> GetNames(AString const &, unsigned type) const override {
    return type == FakeExtractor::kNumbers ? std::vector<AString>{L"Total"} : std::vector<AString>{L"V", L"W"};
  }
  bool Describe(AString const & text, desktop::QuantityInfo & info) const override {
    bool const isNumber = text == L"Total";
    if (!isNumber && text != L"V" && text != L"W")
      return false;
    info = {L"All", StateOf(text == L"W" ? val::kComplex : val::kReal),
            isNumber ? FakeExtractor::kNumbers : FakeExtractor::kOverFrequency};
    return true;
  }

private:
  std::vector<desktop::QuantityReportType> m_types;
};

class Quantities : public desktop::ISolvedQuantities {
public:
  explicit Quantities(FakeVariation const & variation) : m_variation(variation) {}
  bool GetAxis(unsigned type, std::vector<double> & values) override {
    values = Frequencies(m_variation.values.size());
    return type == FakeExtractor::kOverFrequency;
  }
  bool GetColumn(AString const & text, unsigned, QuantityColumn & column) override {
    std::vector<double> const & values = m_variation.values;
    if (text == L"Total") {
      column.numbers = QuantityColumn::Reals{std::accumulate(values.begin(), values.end(), 0.0)};
    } else if (text == L"W") {
      QuantityColumn::Complexes numbers;
      for (double const value : values)
        numbers.emplace_back(value, 2 * value);
      column.numbers = numbers;
    } else {
      column.numbers = values;
    }
    return true;
  }

private:
  FakeVariation const & m_variation;
};

} // namespace

std::unique_ptr<desktop::IQuantityCatalogue> FakeExtractor::MakeCatalogue(BaseSolutionVariation const * solved) const {
  auto const * const variation = dynamic_cast<FakeVariation const *>(solved);
  return std::make_unique<Catalogue>(variation ? variation->values.size() : 0);
}

std::unique_ptr<desktop::ISolvedQuantities> FakeExtractor::OpenQuantities(BaseSolutionVariation const & solved) const {
  auto const * const variation = dynamic_cast<FakeVariation const *>(&solved);
  return variation && variation->HasSolutionData() ? std::make_unique<Quantities>(*variation) : nullptr;
}

} // namespace support
