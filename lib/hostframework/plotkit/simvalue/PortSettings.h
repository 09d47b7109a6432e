#pragma once

#include "basekit/io/CStreamio_block_object.h"
#include "basekit/text/AString.h"
#include "basekit/value/ComplexValue.h"
#include "basekit/value/FloatValue.h"

/// How the data of one port is post-processed.  The port's name is the name of its block.  Distances are in metres,
/// impedances in ohms; what was never set has no value and reads as zero.
class PortSettings : public io::CStreamio_block_object {
public:
  explicit PortSettings(AString const & name) : m_name(name) {}

  AString GetItemName() const override { return m_name; }
  io::ReadError DoDataExchange(io::CBlock & block, bool reading) override;

  /// How far the reference plane moves: positive into the device.
  FloatValue GetDeembeddingDist() const { return m_deembeddingDist; }
  void SetDeembeddingDist(double metres) { m_deembeddingDist.SetValue(metres); }
  void ClearDeembeddingDist() { m_deembeddingDist.ClearValue(); }

  /// With renormalize the impedance that data is brought to, without a value while it is left as solved; otherwise
  /// the one that the port was solved with.
  ComplexValue GetTermination(bool renormalize) const { return renormalize ? m_renormalization : m_impedance; }
  void SetImpedance(AComplex<double> const & ohms) { m_impedance.SetValue(ohms); }
  void SetRenormalization(AComplex<double> const & ohms) { m_renormalization.SetValue(ohms); }
  void ClearRenormalization() { m_renormalization.ClearValue(); }

  friend bool operator==(PortSettings const & a, PortSettings const & b);

private:
  io::ReadError ReadFrom(io::CBlock const & block);
  void WriteTo(io::CBlock & block) const;

  AString m_name;
  FloatValue m_deembeddingDist;
  ComplexValue m_impedance;
  ComplexValue m_renormalization;
};
