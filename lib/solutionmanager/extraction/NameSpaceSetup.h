#pragma once

#include "basekit/value/VariableNameSpace.h"

class BaseSimDataExtractor;
class IValueParser;

/// The name space in which an extractor's report texts are read, for the span of its life: the extractor's own names,
/// the project's and the design editor's, as the extractor's options allow.
class NameSpaceSetup {
public:
  NameSpaceSetup(BaseSimDataExtractor const & extractor, bool appendToPrevious);
  VariableNameSpace & GetNameSpace() { return m_nameSpace; }

private:
  VariableNameSpace m_nameSpace;
};

/// Installs a parser for foreign words for the span of its life, and gives the former one back on every way out.
class ValueParserSpan {
public:
  explicit ValueParserSpan(IValueParser * parser);
  ~ValueParserSpan();
  ValueParserSpan(ValueParserSpan const &) = delete;
  ValueParserSpan & operator=(ValueParserSpan const &) = delete;

private:
  IValueParser * m_former;
};
