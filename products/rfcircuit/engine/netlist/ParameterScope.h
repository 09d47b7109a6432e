#pragma once

#include "products/rfcircuit/engine/netlist/Expression.h"
#include "products/rfcircuit/engine/netlist/Netlist.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace rf {

/** The parameters that one level sees: its own, then those of whoever instantiated it, up to the top.
    Evaluates on demand and once; parameters that depend on themselves are refused with their path.
    Holds pointers to expressions and to its caller, which must outlive it. */
class ParameterScope : public Expression::Names {
public:
  /** The top level, with design variables replaced; unknown ones are refused. */
  ParameterScope(NetlistContent const & content, Overrides const & overrides);
  explicit ParameterScope(ParameterScope & caller) : m_Caller(&caller), m_Open(caller.m_Open) {}
  ParameterScope(ParameterScope const &) = delete;
  ParameterScope & operator=(ParameterScope const &) = delete;

  /** The expression is evaluated in `home` when first asked for.  A later definition replaces an earlier one. */
  void Define(std::string const & folded, Expression const & expression, ParameterScope & home);
  bool DefinesItself(std::string const & folded) const { return m_Entries.count(folded) > 0; }

  double ValueOf(std::string const & name, SourcePosition const & where, std::string const & thing) override;

private:
  struct Entry {
    Expression const * expression = nullptr;
    ParameterScope * home = nullptr;
    std::optional<double> value;
    bool open = false;
  };
  using Path = std::vector<std::string>;

  double Evaluate(std::string const & name, Entry & entry, std::string const & thing);

  ParameterScope * m_Caller = nullptr;
  std::unordered_map<std::string, Entry> m_Entries;
  std::shared_ptr<Path> m_Open = std::make_shared<Path>(); // names under evaluation, shared by all scopes
};

} // namespace rf
