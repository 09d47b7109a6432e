#pragma once

#include "basekit/value/expression/Scope.h"

class IValueParser;
class Variable;

namespace expr {

/// What names mean in the current variable name space; constants come next, then what a derived scope knows.  Datasets
/// are those of the name space.
class NameSpaceScope : public IScope {
public:
  Meaning Find(AString const & name) const final;
  Dataset const * FindDataset(AString const & name) const final;
  /// Of variables; what a derived scope knows can't be listed.
  std::vector<AString> KnownNames() const final;

private:
  virtual Meaning FindForeign(AString const & name) const = 0;
};

/// Words that are no variables become values by a parser, which may be null.
class BindingScope final : public NameSpaceScope {
public:
  explicit BindingScope(IValueParser * parser) : m_parser(parser) {}

private:
  Meaning FindForeign(AString const & name) const override;

  IValueParser * m_parser;
};

/// Only the states of words are asked, of the first parser that knows the word; null parsers are passed over.
class ValidationScope final : public NameSpaceScope {
public:
  explicit ValidationScope(std::vector<IValueParser *> const & parsers) : m_parsers(parsers) {}

private:
  Meaning FindForeign(AString const & name) const override;

  std::vector<IValueParser *> const & m_parsers;
};

/// Null when the current name space, or none, knows no such variable.
Variable * FindCurrentVariable(AString const & name);

} // namespace expr
