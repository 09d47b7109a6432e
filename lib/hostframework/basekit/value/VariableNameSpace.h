#pragma once

#include "basekit/value/EnumSet.h"

#include "basekit/text/AString.h"

#include <map>
#include <utility>
#include <vector>

class IVariableServer;
class Variable;
namespace expr {
struct Dataset;
}

enum class VariableSearchFlag {
  SearchIntrinsicVariables = 0,
  AppendToPreviousVNS = 1,
  SearchServersFirst = 2,
};
using VariableSearchFlags = base::EnumSet_T<VariableSearchFlag, 3>;

/// Where the words of expressions are looked up.  The latest name space alive is the current one; with
/// AppendToPreviousVNS a name that it lacks is looked for in the one before it.  Owns neither variables nor servers nor
/// datasets.
class VariableNameSpace {
public:
  explicit VariableNameSpace(bool searchIntrinsicVariables = true, bool appendToPrevious = true,
                             bool searchServersFirst = false);
  VariableNameSpace(IVariableServer const * server, bool searchIntrinsicVariables, bool appendToPrevious);
  ~VariableNameSpace();
  VariableNameSpace(VariableNameSpace const &) = delete;
  VariableNameSpace & operator=(VariableNameSpace const &) = delete;

  void AddVariable(Variable * variable);
  void AddVariableServer(IVariableServer const * server);
  /// The points must outlive the expressions that read them.
  void AddDataset(AString const & name, expr::Dataset const * points);
  /// Datasets go too.
  void ClearVariablesAndServers();
  void SetVariableSearchFlags(VariableSearchFlags flags) { m_flags = flags; }
  VariableSearchFlags GetVariableSearchFlags() const { return m_flags; }

  /// By name without case: variables, then servers in the order added, then intrinsic variables, then the previous
  /// name space; null when nobody knows the name.
  Variable * FindVariable(AString const & name) const;
  /// Of variables added here and, where a search goes on there, in previous name spaces; servers and intrinsic
  /// variables are not among them.
  std::vector<AString> KnownNames() const;
  /// By name without case, here, then in the previous name space; null when nobody knows the name.
  expr::Dataset const * FindDataset(AString const & name) const;

  /// Null when there is none.
  static VariableNameSpace * Current();

private:
  Variable * FindHere(AString const & name) const;
  Variable * FindInServers(AString const & name) const;

  std::vector<Variable *> m_variables;
  std::map<AString, Variable *, AString::NoCaseLess> m_index; ///< of equal names the first
  std::vector<IVariableServer const *> m_servers;
  std::vector<std::pair<AString, expr::Dataset const *>> m_datasets;
  VariableSearchFlags m_flags;
  VariableNameSpace * m_previous = nullptr;
};
