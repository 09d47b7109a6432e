// Convergence and profile records of a setup.  They come with the records of solves; until then each operation says so.

#include "basekit/diag/Assert.h"
#include "basekit/value/VariableValues.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolutionManager.h"

AString BaseSimulationSetup::GetConvBlockName(AString const & variation, long version) const {
  // A version of id::invalidID stays in the key; callers that mean the current version resolve it first.
  return SolutionVariationKey(GetID(), variation, SolutionVariationKey::kConvDataKey, version).Pack();
}

ConvergenceData * BaseSimulationSetup::GetConvData(AString const &, long, int) {
  KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

CProfileData const * BaseSimulationSetup::GetProfileData(AString const &, long) const {
  KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

io::ReadError BaseSimulationSetup::ReadProfileDataBlock(AString const &, long) {
  KVRO_ASSERT(!"Not available yet");
  return io::kNotFound;
}

ConvergenceData * BaseSimulationSetup::SetupConvData(AString const &, long, int) {
  KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

void BaseSimulationSetup::AddConvValues(AString const &, long, ConvValues *, int) { KVRO_ASSERT(!"Not available yet"); }

void BaseSimulationSetup::CreateConvData(AString const &, long, SetupConvDef const *, int) {
  KVRO_ASSERT(!"Not available yet");
}

void BaseSimulationSetup::InitConvData(AString const &, long, AString const &, AString const &, AString const &,
                                       AString const &, AString const &, AString const &, int) {
  KVRO_ASSERT(!"Not available yet");
}

void BaseSimulationSetup::ClearConvValues(AString const &, long, int) { KVRO_ASSERT(!"Not available yet"); }

bool BaseSimulationSetup::AnyConvData(AString const &) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

io::ReadError BaseSimulationSetup::ReadConvergenceDataBlock(AString const &, long) {
  KVRO_ASSERT(!"Not available yet");
  return io::kNotFound;
}

bool BaseSimulationSetup::WriteConvergenceDataBlock(AString const &, long) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

CProfileData * BaseSimulationSetup::GetProfileDataForEdit(AString const &, long) {
  KVRO_ASSERT(!"Not available yet");
  return nullptr;
}

bool BaseSimulationSetup::WriteProfileDataBlock(AString const &, long) const {
  KVRO_ASSERT(!"Not available yet");
  return false;
}

long BaseSimulationSetup::AddProfileGroup(AString const &, long, int) {
  KVRO_ASSERT(!"Not available yet");
  return id::invalidID;
}

long BaseSimulationSetup::StartProfileGroup(AString const &, long, CProfileUpdate const &, int) {
  KVRO_ASSERT(!"Not available yet");
  return id::invalidID;
}

void BaseSimulationSetup::StopProfileGroup(long, AString const &, long, CProfileUpdate const &, int) {
  KVRO_ASSERT(!"Not available yet");
}

void BaseSimulationSetup::AddProfileTask(AString const &, long, CProfileUpdate const &, int) {
  KVRO_ASSERT(!"Not available yet");
}

void BaseSimulationSetup::AddProfileTaskToGroup(long, AString const &, long, CProfileUpdate const &, int) {
  KVRO_ASSERT(!"Not available yet");
}

long BaseSimulationSetup::GetLastGroupID(AString const &, long, int) const {
  KVRO_ASSERT(!"Not available yet");
  return id::invalidID;
}

void BaseSimulationSetup::ProfileUpdate(AString const &, long, CProfileUpdate const &, int, long *) {
  KVRO_ASSERT(!"Not available yet");
}

void BaseSimulationSetup::UpdateConvData(AString const &, ConvergenceData *, int) const {}
