#pragma once

#include "basekit/text/AString.h"

class IDesign;
class ISimulationService;
class VariableValues;

/// One setting of a design's variables.
class IDesignInstance {
public:
  virtual ~IDesignInstance() = default;
  virtual long GetID() const = 0;
  virtual IDesign * GetIDesign() const = 0;
  /// The variation text of this instance: all variation variables with their values.
  virtual AString GetVariationKey() const = 0;
  /// With those that only post processing knows, where the design has any and they are asked for.
  virtual void GetNominalVariableValues(VariableValues & values, bool withPostProcessing = false) const = 0;
  /// Reached through the instance's design; null when the desktop can't solve.
  virtual ISimulationService * GetSimulationService() const = 0;
};
