#pragma once

#include "basekit/io/CBlock_ptr.h"
#include "basekit/text/AString.h"

#include <limits>

class ConvDef;
namespace io {
class CBlockFuncPtr;
}

/// A value of one pass in one column, which it refers to.  An invalid value is written as a gap, and a gap is read as
/// an invalid value.
class ConvValue {
public:
  virtual ~ConvValue();
  /// The value under the column's token; always true, a missing one is invalid.
  virtual bool Read(io::CBlock_ptr<io::CBlock_func> const & func) = 0;
  /// The value as a number; false, and the largest double, for a value that is none.
  virtual bool GetValue(double & number) const;
  /// The text for tables, "N/A" for an invalid value.
  virtual AString GetValue() const = 0;
  /// Always true.
  virtual bool Write(io::CBlockFuncPtr & func) const = 0;
  virtual bool IsValid() const = 0;

  ConvDef const * GetDef() const { return m_def; }
  /// Moves the value to another column of the same type.
  void SetDef(ConvDef const * def) { m_def = def; }

protected:
  explicit ConvValue(ConvDef const * def) : m_def(def) {}
  ConvValue(ConvValue const &) = default;
  ConvValue & operator=(ConvValue const &) = default;

private:
  ConvDef const * m_def;
};

class IntConvValue : public ConvValue {
public:
  static constexpr int kInvalid = 2147483647;

  IntConvValue(ConvDef const * def, int value) : ConvValue(def), m_value(value) {}
  bool Read(io::CBlock_ptr<io::CBlock_func> const & func) override;
  /// True for an invalid value too, which gives the largest double.
  bool GetValue(double & number) const override;
  AString GetValue() const override;
  bool Write(io::CBlockFuncPtr & func) const override;
  bool IsValid() const override { return m_value != kInvalid; }

private:
  int m_value;
};

class DoubleConvValue : public ConvValue {
public:
  static constexpr double kInvalid = std::numeric_limits<double>::max();

  DoubleConvValue(ConvDef const * def, double value) : ConvValue(def), m_value(value) {}
  bool Read(io::CBlock_ptr<io::CBlock_func> const & func) override;
  bool GetValue(double & number) const override;
  AString GetValue() const override;
  bool Write(io::CBlockFuncPtr & func) const override;
  bool IsValid() const override { return m_value != kInvalid; }

private:
  double m_value;
};

class StringConvValue : public ConvValue {
public:
  static AString const kInvalid;

  StringConvValue(ConvDef const * def, AString const & value) : ConvValue(def), m_value(value) {}
  bool Read(io::CBlock_ptr<io::CBlock_func> const & func) override;
  using ConvValue::GetValue;
  AString GetValue() const override { return m_value; }
  bool Write(io::CBlockFuncPtr & func) const override;
  bool IsValid() const override { return m_value.Compare(kInvalid) != 0; }

private:
  AString m_value;
};
