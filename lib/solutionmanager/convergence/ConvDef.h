#pragma once

#include "basekit/io/CBlock_ptr.h"
#include "basekit/text/AString.h"

class ConvValue;

/// One column of a convergence table: what a solve measures at each pass.  Columns are known by their addresses, so
/// they live as long as any record that refers to them.
class ConvDef {
public:
  /// The values bear the names of the classes.
  enum ConvDefType : int { IntConvDef = 1, DoubleConvDef = 2, StringConvDef = 3 };

  /// A new value, invalid at first, of the column that is given.
  virtual ConvValue * CreateValue(ConvDef const * def) const = 0;
  virtual ConvDefType GetType() const = 0;

  /// The name that is shown.
  AString const & GetName() const { return m_name; }
  /// The name of the value in files.
  AString const & GetToken() const { return m_token; }
  bool CanPlot() const { return m_canPlot; }
  /// Left out of tables; there is no way back.
  bool IsHidden() const { return m_hidden; }
  void SetHidden() { m_hidden = true; }

  /// A new value of this column, read from a pass; null when it can't be read.
  ConvValue * ReadValue(io::CBlock_ptr<io::CBlock_func> const & func) const;

protected:
  ConvDef(AString const & name, AString const & token, bool canPlot)
      : m_canPlot(canPlot), m_name(name), m_token(token) {}
  /// The token stays empty on purpose: a copy is a column of its own, which files don't know.
  ConvDef(ConvDef const & other) : m_canPlot(other.m_canPlot), m_name(other.m_name), m_hidden(other.m_hidden) {}
  ConvDef & operator=(ConvDef const & other) = default;

public:
  virtual ~ConvDef() = default;

private:
  bool m_canPlot;
  AString m_name;
  AString m_token;
  bool m_hidden = false;
};

/// A column of whole numbers.
class IntConvDef : public ConvDef {
public:
  IntConvDef(AString const & name, AString const & token, bool canPlot) : ConvDef(name, token, canPlot) {}
  ConvValue * CreateValue(ConvDef const * def) const override;
  ConvDefType GetType() const override { return ConvDef::IntConvDef; }
};

/// A column of numbers.
class DoubleConvDef : public ConvDef {
public:
  DoubleConvDef(AString const & name, AString const & token, bool canPlot) : ConvDef(name, token, canPlot) {}
  ConvValue * CreateValue(ConvDef const * def) const override;
  ConvDefType GetType() const override { return ConvDef::DoubleConvDef; }
};

/// A column of texts.
class StringConvDef : public ConvDef {
public:
  StringConvDef(AString const & name, AString const & token, bool canPlot) : ConvDef(name, token, canPlot) {}
  ConvValue * CreateValue(ConvDef const * def) const override;
  ConvDefType GetType() const override { return ConvDef::StringConvDef; }
};
