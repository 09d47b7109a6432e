#pragma once

#include "products/rfcircuit/product/quantity/PortQuantity.h"

namespace rfcircuit {

/// "S(2,1)": the wave out of port 2 for one into port 1, with respect to the impedances that the ports have now.
class SParameter : public PortQuantity {
public:
  AString GetSymbol() const override { return L"S"; }
  AString GetCategory() const override { return L"S Parameter"; }
  ValueState GetState() const override;

protected:
  int CountPorts() const override { return 2; }
  void Fill(NetworkView & view, Ports const & ports, desktop::QuantityColumn & column) const override;
  bool Matters(PortChange const & change, std::vector<AString> const & ports) const override;
};

/// "Y(2,1)": the current into port 2 for a voltage at port 1 while all others are shorted, in siemens.
class YParameter : public PortQuantity {
public:
  AString GetSymbol() const override { return L"Y"; }
  AString GetCategory() const override { return L"Y Parameter"; }
  ValueState GetState() const override;

protected:
  int CountPorts() const override { return 2; }
  void Fill(NetworkView & view, Ports const & ports, desktop::QuantityColumn & column) const override;
  bool Matters(PortChange const & change, std::vector<AString> const & ports) const override;
};

/// "Z(2,1)": the voltage at port 2 for a current into port 1 while all others are open, in ohm.
class ZParameter : public PortQuantity {
public:
  AString GetSymbol() const override { return L"Z"; }
  AString GetCategory() const override { return L"Z Parameter"; }
  ValueState GetState() const override;

protected:
  int CountPorts() const override { return 2; }
  void Fill(NetworkView & view, Ports const & ports, desktop::QuantityColumn & column) const override;
  bool Matters(PortChange const & change, std::vector<AString> const & ports) const override;
};

/// "VSWR1": of the wave into port 1 with all others ended; infinite where as much or more comes back.
class StandingWaveRatio : public PortQuantity {
public:
  AString GetSymbol() const override { return L"VSWR"; }
  AString GetCategory() const override { return L"VSWR"; }
  ValueState GetState() const override;

protected:
  int CountPorts() const override { return 1; }
  bool IsWrittenShort() const override { return true; }
  void Fill(NetworkView & view, Ports const & ports, desktop::QuantityColumn & column) const override;
  bool Matters(PortChange const & change, std::vector<AString> const & ports) const override;
};

/// "GD(2,1)": of S(2,1), in seconds.
class GroupDelay : public PortQuantity {
public:
  AString GetSymbol() const override { return L"GD"; }
  AString GetCategory() const override { return L"Group Delay"; }
  ValueState GetState() const override;

protected:
  int CountPorts() const override { return 2; }
  void Fill(NetworkView & view, Ports const & ports, desktop::QuantityColumn & column) const override;
  bool Matters(PortChange const & change, std::vector<AString> const & ports) const override;
};

/// "Zo(1)": the impedance that port 1 has now, in ohm.
class PortImpedance : public PortQuantity {
public:
  AString GetSymbol() const override { return L"Zo"; }
  AString GetCategory() const override { return L"Port Impedance"; }
  ValueState GetState() const override;

protected:
  int CountPorts() const override { return 1; }
  void Fill(NetworkView & view, Ports const & ports, desktop::QuantityColumn & column) const override;
  bool Matters(PortChange const & change, std::vector<AString> const & ports) const override;
};

/// "Freq": the frequencies of the sweep, in hertz.
class FrequencyQuantity : public PortQuantity {
public:
  AString GetSymbol() const override { return L"Freq"; }
  AString GetCategory() const override { return L"Frequency"; }
  ValueState GetState() const override;

protected:
  int CountPorts() const override { return 0; }
  void Fill(NetworkView & view, Ports const & ports, desktop::QuantityColumn & column) const override;
  bool Matters(PortChange const &, std::vector<AString> const &) const override { return false; }
};

} // namespace rfcircuit
