#pragma once

#include "basekit/value/VariableValues.h"
#include "plotkit/simvalue/SimValueContext.h"

#include <functional>

class BaseSimDataExtractor;
class BaseSolutionManager;
class IDesignInstance;
class ISimDataExtractor;
class ISolution;
class OutputVariable;
class SubsweepVector;

/// The value of an output variable at one variation of one solution: asked of solved data through a point set that
/// exists for the question alone.  What is wrong is told to the user.  Owns nothing.
class Evaluation {
public:
  struct Question {
    AString const & variable;
    AString const & solution;
    AString const & variation;
    AString const & context; ///< as a product writes it; empty for the usual one
    IDesignInstance * instance;
  };
  /// What a product makes of a text that names a context.
  using SetContext =
      std::function<void(SimValueContext & context, AString const & text, ISimDataExtractor const * extractor,
                         std::vector<unsigned> const & reportTypes)>;

  Evaluation(BaseSolutionManager const & manager, Question const & question, SetContext const & setContext)
      : m_manager(manager), m_question(question), m_setContext(setContext) {}

  /// True when there is exactly one value.  The result may have been written all the same when not.
  bool Run(Value & result);

private:
  bool FindSolution();
  bool HasSolvedData();
  bool FindVariable();
  bool ChooseContext();
  bool IsVariableUsable() const;
  bool Evaluate(Value & result) const;
  bool SelectPoint(SubsweepVector & subsweeps) const;
  void UpdateSet(SolutionPointSet & pointSet) const;

  VariableValues ResolveVariation() const;
  IDesignInstance * Instance() const;
  /// What solved data is filed under that the values are a point of.
  AString SolvedVariation(VariableValues const & values) const;
  /// Without what the design does not vary, and what is applied to solved data afterwards.
  VariableValues WithoutAxesOfData(VariableValues const & values) const;

  BaseSolutionManager const & m_manager;
  Question m_question;
  SetContext const & m_setContext;
  ISolution * m_solution = nullptr;
  BaseSimDataExtractor * m_extractor = nullptr;
  OutputVariable const * m_variable = nullptr;
  SimValueContext m_context;
  unsigned m_reportType = 0;
};
