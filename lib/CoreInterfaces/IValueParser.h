#pragma once

#include "basekit/text/AString.h"

class ValueBase;
struct ValueState;
template <class T> class AComplex;

/// Says what a word of an expression means that is no variable, and evaluates what it gave out.  Values stay the
/// parser's.
class IValueParser {
public:
  virtual ValueBase * GetDynamicDatasetValue(ValueBase const * first, ValueBase const * second);
  /// Null when the word is no quantity.
  virtual ValueBase * ParseText(AString const & text) = 0;
  virtual double GetValue(ValueBase const & value);
  virtual AComplex<double> GetComplexValue(ValueBase const & value);
  virtual void * ParserHookA();
  virtual void * ParserHookB();
  virtual void * ParserHookC();
  virtual bool ParserHookD();
  virtual void * ParserHookE();
  virtual void * ParserHookF();
  /// The default asserts and returns (90, 15, 1, 0).
  virtual ValueState GetValueStateFromText(AString const & text);
  virtual ValueBase * GetDynamicDatasetValueForValidation(ValueState const & first, ValueState const & second);
  virtual void * ParserHookG();
  virtual void * ParserHookH();
  /// Parses the first text; an array ends it there.  Otherwise the first place is cleared and the second text counts.
  virtual ValueBase * ParseDatasetTexts(AString const & firstText, ValueBase *& first, AString const & secondText,
                                        ValueBase *& second);
  virtual void * ParserHookI();
  virtual ~IValueParser();
};
