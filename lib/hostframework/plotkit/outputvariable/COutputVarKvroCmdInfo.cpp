#include "plotkit/outputvariable/COutputVarKvroCmdInfo.h"

void COutputVarKvroCmdInfo::AddEditedOutputVar(OutputVariable const * variable) {
  if (variable && m_known.insert(variable).second)
    m_variables.push_back(variable);
}
