#pragma once

#include "basekit/message/KelvroMessage.h"
#include "basekit/message/MessageQueueRestorer.h"

#include <initializer_list>

/// What users are told about output variables, by number.
namespace outputvariables {

enum MessageNumber : long {
  kNameIsInUse = 24527,
  kItemIsNoFunction = 24528,
  kAnotherRefersToIt = 24553,
  kNoMemory = 24554,
  kNoSuchVariable = 24555,
  kIsInUse = 24556,
  kNameOfAQuantity = 24557,
  kNoLabel = 24558,
  kBadExpression = 24559,
  kWasReset = 24560,
  kNotOneLabel = 24575,
  kIsCyclic = 24576,
  kNameIsMissing = 24583,
  kNoSuchSolution = 24584,
  kSweepHasNoValues = 24585,
  kNoSuchPoint = 24586,
  kIsNoNumber = 24618,
  kPastedUnderNewName = 24624,
  kBadNameInDesign = 24679,
  kNoSolvedData = 24729,
};

/// Without a desktop there is nobody to tell.
void Tell(MessageNumber number, AString const & argument, KelvroMessage::Severity severity = KelvroMessage::kError);

void Tell(MessageNumber number, std::initializer_list<AString> arguments, KelvroMessage::Severity severity);

/// Holds messages back for the span of its life.
class Silence {
public:
  Silence();

private:
  MessageQueueRestorer m_restorer;
};

} // namespace outputvariables
