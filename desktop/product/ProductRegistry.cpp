#include "desktop/product/ProductRegistry.h"

#include "desktop/product/IDesktopProduct.h"

namespace desktop {

ProductRegistry & ProductRegistry::Instance() {
  static ProductRegistry registry;
  return registry;
}

ProductRegistry::ProductRegistry() = default;
ProductRegistry::~ProductRegistry() = default;

void ProductRegistry::Register(std::unique_ptr<IDesktopProduct> product) {
  for (auto & present : m_products)
    if (AString::MatchNoCase(present->GetName(), product->GetName())) {
      present = std::move(product);
      return;
    }
  m_products.push_back(std::move(product));
}

IDesktopProduct const * ProductRegistry::Find(AString const & name) const {
  for (auto const & product : m_products)
    if (AString::MatchNoCase(product->GetName(), name))
      return product.get();
  return nullptr;
}

std::vector<AString> ProductRegistry::Names() const {
  std::vector<AString> names;
  for (auto const & product : m_products)
    names.push_back(product->GetName());
  return names;
}

} // namespace desktop
