#pragma once

#include "basekit/text/AString.h"

class SimValueContext;
struct ValueState;

/// A product's extractor under the reporter rewrite.  The numbered operations are the product's own: what counts here
/// is the order, by which the views of an extractor reach them.
class ISimDataExtractor3 {
public:
  virtual ~ISimDataExtractor3() = default;
  virtual void Extractor3Op1() = 0;
  virtual void Extractor3Op2() = 0;
  virtual void Extractor3Op3() = 0;
  virtual void Extractor3Op4() = 0;
  virtual void Extractor3Op5() = 0;
  virtual void Extractor3Op6() = 0;
  virtual void Extractor3Op7() = 0;
  /// isInteger is retiring: a product marks whole numbers by the state's parameter type.
  virtual void GetQuantityType(ValueState & state, bool & isInteger, AString const & quantity,
                               SimValueContext const & context, unsigned reportType) const = 0;
  virtual void GetEnumQuantityText(AString & text, AString const & quantity, SimValueContext const & context,
                                   unsigned reportType, double value) const = 0;
  virtual void Extractor3Op10() = 0;
  virtual void Extractor3Op11() = 0;
  virtual void Extractor3Op12() = 0;
  virtual void Extractor3Op13() = 0;
  virtual void Extractor3Op14() = 0;
  virtual void Extractor3Op15() = 0;
  virtual void Extractor3Op16() = 0;
};
