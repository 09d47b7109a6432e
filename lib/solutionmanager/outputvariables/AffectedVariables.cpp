#include "solutionmanager/outputvariables/AffectedVariables.h"

#include "basekit/command/IKelvroCommand.h"
#include "basekit/command/PropertyCommandInfo.h"

void AffectedVariables::Collect(IKelvroCommand const & command) const {
  KelvroCommandInfo const * info = command.GetInfo(KelvroCommandInfo::kDesignProperties);
  if (!info)
    info = command.GetInfo(KelvroCommandInfo::kProjectProperties);
  auto const * const properties = dynamic_cast<PropertyCommandInfo const *>(info);
  if (!properties)
    return;
  bool const runsBackwards = command.IsUndoing() || command.IsRollingBack();
  std::vector<AString> & ofCreated = runsBackwards ? deleted : created;
  std::vector<AString> & ofDeleted = runsBackwards ? created : deleted;
  for (PropertyCommandInfo::Property const & property : properties->GetProperties()) {
    if (!property.IsVariableProp())
      continue;
    if (property.GetFlags() & PropertyCommandInfo::kEdited)
      edited.push_back(property.GetName());
    if (property.GetFlags() & PropertyCommandInfo::kDeleted)
      ofDeleted.push_back(property.GetName());
    if (property.GetFlags() & PropertyCommandInfo::kCreated)
      ofCreated.push_back(property.GetName());
  }
}
