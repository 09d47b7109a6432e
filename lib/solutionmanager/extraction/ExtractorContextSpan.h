#pragma once

#include "plotkit/simvalue/SimValueContext.h"

class BaseSimDataExtractor;
class ISimDataExtractor;

/// Gives an extractor back, at the end of its life, the context in which it reads texts now.  Null is allowed.
class ExtractorContextSpan {
public:
  explicit ExtractorContextSpan(ISimDataExtractor * extractor);
  ~ExtractorContextSpan();
  ExtractorContextSpan(ExtractorContextSpan const &) = delete;
  ExtractorContextSpan & operator=(ExtractorContextSpan const &) = delete;

private:
  BaseSimDataExtractor * m_extractor;
  SimValueContext m_former;
};
