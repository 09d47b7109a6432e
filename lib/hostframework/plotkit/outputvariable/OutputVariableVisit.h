#pragma once

class OutputVariable;

/// One variable on the way of a question through the definitions of output variables, which may go round in a circle:
/// a variable that the same question is still busy with is not entered again.  Neither is one that lies deeper than
/// definitions may nest where they are evaluated.
class OutputVariableVisit {
public:
  enum class Question { State, Quantities, References };

  OutputVariableVisit(Question question, OutputVariable const & variable);
  ~OutputVariableVisit();
  OutputVariableVisit(OutputVariableVisit const &) = delete;
  OutputVariableVisit & operator=(OutputVariableVisit const &) = delete;

  bool MayEnter() const { return m_mayEnter; }

private:
  Question m_question;
  OutputVariable const & m_variable;
  OutputVariableVisit const * m_former;
  bool m_mayEnter = true;
};
