#pragma once

class OutputVariable;

/// One variable on the way of a question through the definitions of output variables, which may go round in a circle:
/// a variable that the same question is still busy with is not entered again.
class OutputVariableVisit {
public:
  enum class Question { State, Quantities, References };

  OutputVariableVisit(Question question, OutputVariable const & variable);
  ~OutputVariableVisit();
  OutputVariableVisit(OutputVariableVisit const &) = delete;
  OutputVariableVisit & operator=(OutputVariableVisit const &) = delete;

  /// False when the question came to the variable before and has not left it.
  bool IsFirst() const { return m_isFirst; }

private:
  Question m_question;
  OutputVariable const & m_variable;
  OutputVariableVisit const * m_former;
  bool m_isFirst = true;
};
