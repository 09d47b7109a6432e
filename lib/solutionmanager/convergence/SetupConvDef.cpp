#include "solutionmanager/convergence/SetupConvDef.h"

#include "basekit/diag/Assert.h"
#include "solutionmanager/convergence/ConvDef.h"

#include <algorithm>

void SetupConvDef::AddDef(ConvDef const * def) {
  if (FindByToken(def->GetToken()) != end())
    KVRO_ASSERT(!"Duplicate convergence definition");
  m_defs.push_back(def);
}

SetupConvDef::iterator SetupConvDef::FindByName(AString const & name) const {
  return std::find_if(begin(), end(), [&](ConvDef const * def) { return def->GetName().Compare(name) == 0; });
}

SetupConvDef::iterator SetupConvDef::FindByToken(AString const & token) const {
  return std::find_if(begin(), end(), [&](ConvDef const * def) { return def->GetToken().Compare(token) == 0; });
}

void SetupConvDef::DeleteWithEntries(std::set<SetupConvDef const *> const & lists) {
  std::set<ConvDef const *> defs;
  for (SetupConvDef const * list : lists) {
    defs.insert(list->begin(), list->end());
    delete list;
  }
  for (ConvDef const * def : defs)
    delete def;
}
