#pragma once

#include "CoreInterfaces/IValueParser.h"

class BaseSimDataExtractor;
class SimValueContext;

/// Parses for one evaluation, in the context of that evaluation rather than the extractor's own.  Owns neither; lives
/// no longer than they do.
class SDEOutputDataValueParser : public IValueParser {
public:
  SDEOutputDataValueParser(BaseSimDataExtractor * extractor, SimValueContext const * context)
      : m_extractor(extractor), m_context(context) {}

  ValueBase * GetDynamicDatasetValue(ValueBase const * first, ValueBase const * second) override;
  ValueBase * ParseText(AString const & text) override;
  double GetValue(ValueBase const & value) override;
  AComplex<double> GetComplexValue(ValueBase const & value) override;
  /// The first three hooks assert: an evaluation never comes to them.
  void * ParserHookA() override;
  void * ParserHookB() override;
  void * ParserHookC() override;
  ValueState GetValueStateFromText(AString const & text) override;
  ValueBase * GetDynamicDatasetValueForValidation(ValueState const & first, ValueState const & second) override;

private:
  IValueParser & Extractors() const;

  BaseSimDataExtractor * m_extractor;
  SimValueContext const * m_context;
};
