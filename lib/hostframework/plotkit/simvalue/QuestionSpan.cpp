#include "plotkit/simvalue/QuestionSpan.h"

#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "plotkit/simvalue/IQuestionData.h"

QuestionSpan::QuestionSpan(ISimDataExtractor * extractor, VariableValues const & variation)
    : m_data(dynamic_cast<IQuestionData *>(extractor)) {
  if (m_data)
    m_data->BeginQuestion(variation);
}

QuestionSpan::~QuestionSpan() {
  if (m_data)
    m_data->EndQuestion();
}
