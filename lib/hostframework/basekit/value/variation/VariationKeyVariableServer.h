#pragma once

#include "CoreInterfaces/IVariableServer.h"

#include "basekit/text/AString.h"

#include <memory>
#include <vector>

/// Serves the variables that a variation text sets, with the values of that text.  They are made on the first question
/// and live as long as the server.
class VariationKeyVariableServer : public IVariableServer {
public:
  explicit VariationKeyVariableServer(AString const & variation);
  ~VariationKeyVariableServer() override;
  VariationKeyVariableServer(VariationKeyVariableServer const &) = delete;
  VariationKeyVariableServer & operator=(VariationKeyVariableServer const &) = delete;

  Variable * ResolveVariable(AString const & name) const override;

private:
  AString m_variation;
  mutable bool m_read = false;
  mutable std::vector<std::unique_ptr<Variable>> m_variables;
};
