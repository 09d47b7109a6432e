#pragma once

#include "basekit/text/AString.h"

#include <memory>
#include <vector>

namespace desktop {

class IDesktopProduct;

/// The products of this process.  Built-in ones are registered by the program; nothing is found by magic.
class ProductRegistry {
public:
  static ProductRegistry & Instance();

  /// A product of the same name (without case) is replaced.
  void Register(std::unique_ptr<IDesktopProduct> product);
  /// Null for an unknown name; case does not count.
  IDesktopProduct const * Find(AString const & name) const;
  std::vector<AString> Names() const;

private:
  ProductRegistry();
  ~ProductRegistry();

  std::vector<std::unique_ptr<IDesktopProduct>> m_products;
};

} // namespace desktop
