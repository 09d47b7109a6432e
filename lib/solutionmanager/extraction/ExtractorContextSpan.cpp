#include "solutionmanager/extraction/ExtractorContextSpan.h"

#include "solutionmanager/extraction/BaseSimDataExtractor.h"

ExtractorContextSpan::ExtractorContextSpan(ISimDataExtractor * extractor)
    : m_extractor(dynamic_cast<BaseSimDataExtractor *>(extractor)),
      m_former(m_extractor ? &m_extractor->GetSimValueContext() : nullptr) {}

ExtractorContextSpan::~ExtractorContextSpan() {
  if (m_extractor)
    m_extractor->SetSimValueContext(&m_former);
}
