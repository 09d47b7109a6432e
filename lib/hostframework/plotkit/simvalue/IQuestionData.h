#pragma once

class VariableValues;

/// An extractor that makes a question about one variation cheap, in the course of which data is asked for more than
/// once; found by a cross-cast of the extractor.
class IQuestionData {
public:
  virtual ~IQuestionData() = default;

  /// Until EndQuestion what was loaded last stays in memory, past FinishLoadingSolvedData.  What has to be found out
  /// about the solution is found out from the variation, where no set needs it to hold for others too; without values
  /// it is not.  What the variation leaves out has its nominal value.  Solved data neither comes nor goes meanwhile.
  virtual void BeginQuestion(VariableValues const & variation) = 0;
  virtual void EndQuestion() = 0;
};
