#pragma once

#include "basekit/text/AString.h"

/// What the desktop knows of the product that a design belongs to.
class IProductInfo {
public:
  virtual ~IProductInfo() = default;
  virtual AString GetProductName() const = 0;
};
