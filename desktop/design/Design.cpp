#include "desktop/design/Design.h"

#include "CoreInterfaces/IVariableServer.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableNameSpace.h"
#include "basekit/value/VariableValues.h"
#include "desktop/design/SimValueManager.h"
#include "desktop/project/Project.h"

namespace desktop {

namespace {

constexpr long kNominalInstanceID = 1;
AString const kVariables(L"Variables");
AString const kVariable(L"Variable");
AString const kName(L"Name");
AString const kValue(L"Value");

} // namespace

class Design::VariableServer : public IVariableServer {
public:
  explicit VariableServer(Design const & design) : m_design(design) {}
  Variable * ResolveVariable(AString const & name) const override { return m_design.FindVariable(name); }

private:
  Design const & m_design;
};

class Design::ProductInfo : public IProductInfo {
public:
  explicit ProductInfo(AString const & name) : m_name(name) {}
  AString GetProductName() const override { return m_name; }

private:
  AString m_name;
};

Design::Design(Project & project, AString const & name, long designID, AString const & productName)
    : m_project(project), m_name(name), m_designID(designID), m_productInfo(std::make_unique<ProductInfo>(productName)),
      m_variableServer(std::make_unique<VariableServer>(*this)), m_simValueManager(std::make_unique<SimValueManager>()),
      m_nominal(*this, kNominalInstanceID) {}

Design::~Design() = default;

IProject * Design::GetIProject() const { return &m_project; }

IProductInfo const * Design::GetProductInfo() const { return m_productInfo.get(); }

void Design::GetDesignInstances(std::vector<IDesignInstance *> & instances) const {
  auto & self = const_cast<Design &>(*this);
  instances.push_back(&self.m_nominal);
  for (auto & [variation, instance] : self.m_instances)
    instances.push_back(&instance);
}

// Nothing on a screen hangs on these: who shows solutions asks for them when it shows them.
void Design::NotifySolutionsChanged() {}
void Design::NotifySolutionDataDeleted(long) {}

void Design::GetPropertyVariables(std::vector<Variable *> & variables) const {
  for (auto const & variable : m_variables)
    variables.push_back(variable.get());
}

ISimValueManagerHost * Design::GetSimValueManagerHost() const { return m_simValueManager.get(); }

IVariableServer * Design::GetVariableServer() const { return m_variableServer.get(); }

void Design::GetDefaultVariableValues(VariableValues & values) const {
  for (auto const & variable : m_variables)
    values.Set(variable->GetName(), variable->GetValue());
}

void Design::SetupVariableNameSpace(VariableNameSpace & nameSpace, bool) const {
  nameSpace.AddVariableServer(m_variableServer.get());
}

void Design::SetupVNSForPostProcessing(VariableNameSpace & nameSpace) const {
  nameSpace.AddVariableServer(m_variableServer.get());
}

void Design::AddVariable(AString const & name, AString const & value) {
  m_variables.push_back(std::make_unique<Variable>(name, value));
}

void Design::ExchangeVariables(Variables & variables) {
  for (auto & other : variables)
    for (auto & present : m_variables)
      if (present->GetName() == other->GetName()) {
        Value const value = present->GetValue();
        present->SetValue(other->GetValue());
        other->SetValue(value);
        present.swap(other);
      }
  m_variables.swap(variables);
}

Variable * Design::FindVariable(AString const & name) const {
  for (auto const & variable : m_variables)
    if (AString::MatchNoCase(variable->GetName(), name))
      return variable.get();
  return nullptr;
}

std::vector<Variable *> Design::GetVariables() const {
  std::vector<Variable *> variables;
  GetPropertyVariables(variables);
  return variables;
}

AString Design::GetVariation(std::vector<std::pair<AString, AString>> const & replaced) const {
  VariableValues values;
  for (auto const & [name, text] : replaced) {
    Value value;
    value.SetConstantText(text);
    values.Set(name, value);
  }
  return VariableValues::BuildVariationKey(GetVariables(), &values);
}

DesignInstance & Design::InstanceFor(AString const & variation) {
  auto const at = m_instances.find(variation);
  if (at != m_instances.end())
    return at->second;
  long const id = kNominalInstanceID + 1 + static_cast<long>(m_instances.size());
  return m_instances.try_emplace(variation, *this, id, variation).first->second;
}

void Design::Write(io::CBlock & block) const {
  io::CBlock variables(kVariables);
  for (auto const & variable : m_variables) {
    io::CBlock_func item(kVariable);
    item << io::named(kName, variable->GetName()) << io::named(kValue, variable->GetValueText());
    variables << item;
  }
  block << variables;
}

bool Design::Read(io::CBlock const & block) {
  io::CBlock const * const items = block.FindBlock(kVariables);
  if (!items)
    return false;
  std::vector<std::unique_ptr<Variable>> variables;
  for (auto const & child : *items) {
    io::CBlock_ptr<io::CBlock_func> const item(child);
    AString name;
    AString value;
    if (!item)
      return false;
    *item >> io::named(kName, name);
    bool const isNamed = item->Found() && !name.empty();
    *item >> io::named(kValue, value);
    if (!isNamed || !item->Found())
      return false;
    variables.push_back(std::make_unique<Variable>(name, value));
  }
  m_variables = std::move(variables);
  return true;
}

} // namespace desktop
