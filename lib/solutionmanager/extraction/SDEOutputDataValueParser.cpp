#include "solutionmanager/extraction/SDEOutputDataValueParser.h"

#include "basekit/diag/Assert.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"

IValueParser & SDEOutputDataValueParser::Extractors() const { return *m_extractor->GetIValueParser(); }

ValueBase * SDEOutputDataValueParser::GetDynamicDatasetValue(ValueBase const * first, ValueBase const * second) {
  return Extractors().GetDynamicDatasetValue(first, second);
}

ValueBase * SDEOutputDataValueParser::ParseText(AString const & text) { return Extractors().ParseText(text); }

double SDEOutputDataValueParser::GetValue(ValueBase const & value) { return Extractors().GetValue(value); }

AComplex<double> SDEOutputDataValueParser::GetComplexValue(ValueBase const & value) {
  return Extractors().GetComplexValue(value);
}

void * SDEOutputDataValueParser::ParserHookA() {
  KVRO_ASSERT(0);
  return nullptr;
}

void * SDEOutputDataValueParser::ParserHookB() {
  KVRO_ASSERT(0);
  return nullptr;
}

void * SDEOutputDataValueParser::ParserHookC() {
  KVRO_ASSERT(0);
  return nullptr;
}

ValueState SDEOutputDataValueParser::GetValueStateFromText(AString const & text) {
  return m_extractor->GetValueStateFromText(text, m_context);
}

ValueBase * SDEOutputDataValueParser::GetDynamicDatasetValueForValidation(ValueState const & first,
                                                                          ValueState const & second) {
  return Extractors().GetDynamicDatasetValueForValidation(first, second);
}
