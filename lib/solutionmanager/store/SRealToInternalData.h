#pragma once

#include "solutionmanager/address/SolutionVariationKey.h"

#include <map>

/// What the name map holds for a block: the key that its real name unpacks to, and the name it bears in the library.
struct SRealToInternalData {
  SolutionVariationKey key;
  AString internalName;
};

/// By real block names.
using RealToInternalMap = std::map<AString, SRealToInternalData>;
