#include "solutionmanager/recovery/RecoveryReport.h"

AString TextOf(RecoveryReport::Outcome outcome) {
  switch (outcome) {
  case RecoveryReport::Outcome::kNotTried:
    return L"nothing to recover";
  case RecoveryReport::Outcome::kTakenOver:
    return L"taken over";
  case RecoveryReport::Outcome::kFailed:
    return L"recovery failed";
  }
  return AString();
}

AString TextOf(RecoveryReport::Failure failure) {
  switch (failure) {
  case RecoveryReport::Failure::kNone:
    return AString();
  case RecoveryReport::Failure::kNameMapDamaged:
    return L"the map of block names is damaged";
  case RecoveryReport::Failure::kFileRefused:
    return L"the private file can't be taken over";
  case RecoveryReport::Failure::kNotWritten:
    return L"the recovered state could not be written";
  case RecoveryReport::Failure::kDefinitionsDamaged:
    return L"a definition block is damaged";
  }
  return AString();
}

AString TextOf(RecoveryReport::Reason reason) {
  switch (reason) {
  case RecoveryReport::Reason::kBlockLost:
    return L"its block is lost";
  case RecoveryReport::Reason::kNameGone:
    return L"it was renamed or deleted before the crash";
  case RecoveryReport::Reason::kSetupUnknown:
    return L"the design has no such setup";
  case RecoveryReport::Reason::kSolutionUnknown:
    return L"the setup has no such solution";
  case RecoveryReport::Reason::kOtherVersion:
    return L"solved for another version of the design";
  case RecoveryReport::Reason::kSetupDeleted:
    return L"its setup was deleted";
  case RecoveryReport::Reason::kSolutionDeleted:
    return L"its solution was deleted";
  }
  return AString();
}
