#include "basekit/value/variation/VariationKeyVariableServer.h"

#include "basekit/value/Variable.h"
#include "basekit/value/variation/VariationText.h"

#include <algorithm>

VariationKeyVariableServer::VariationKeyVariableServer(AString const & variation) : m_variation(variation) {}

VariationKeyVariableServer::~VariationKeyVariableServer() = default;

Variable * VariationKeyVariableServer::ResolveVariable(AString const & name) const {
  if (!m_read) {
    VariationText const parsed(m_variation);
    for (VariationText::Pair const & pair : parsed.Pairs())
      m_variables.push_back(std::make_unique<Variable>(AString(pair.name), AString(pair.text)));
    m_read = true;
  }
  auto const found =
      std::lower_bound(m_variables.begin(), m_variables.end(), name, [](auto const & variable, AString const & wanted) {
        return variable->GetName().CompareNoCase(wanted) < 0;
      });
  return found != m_variables.end() && AString::MatchNoCase((*found)->GetName(), name) ? found->get() : nullptr;
}
