#pragma once

class IQuestionData;
class ISimDataExtractor;
class VariableValues;

/// A question to an extractor, for the span of its life.  Of an extractor that knows none, or null, nothing is wanted.
class QuestionSpan {
public:
  QuestionSpan(ISimDataExtractor * extractor, VariableValues const & variation);
  ~QuestionSpan();
  QuestionSpan(QuestionSpan const &) = delete;
  QuestionSpan & operator=(QuestionSpan const &) = delete;

private:
  IQuestionData * m_data;
};
