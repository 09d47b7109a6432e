#pragma once

#include "basekit/io/CStreamio_block_object.h"
#include "basekit/text/AString.h"
#include "basekit/value/ParameterType.h"
#include "basekit/value/units/Units.h"
#include "plotkit/sweep/SteppedRange.h"

#include <optional>
#include <vector>

class Subsweep;
class SweepBase;

/// What a block tells of one subsweep: whose it is, and which points count: all, some places, or a range.
class SubsweepDefParams : public io::CStreamio_block_object {
public:
  AString GetItemName() const override;
  /// Reading gives kNotFound without a variable, kBadContent for places that are none; an error changes nothing.
  io::ReadError DoDataExchange(io::CBlock & block, bool reading) override;

  AString const & GetVariableName() const { return m_variable; }
  void SetVariableName(AString const & name) { m_variable = name; }
  /// A special sweep is made on demand, from its parameter type and units.
  bool IsSpecial() const { return m_isSpecial; }
  val::ParameterType GetParameterType() const { return m_type; }
  Units::FullUnitType GetUnits() const { return m_units; }
  void SetSpecial(bool isSpecial, val::ParameterType type, Units::FullUnitType units);
  void SetSelection(std::vector<unsigned> places) { m_places = std::move(places); }
  void SetRange(SteppedRange const & range) { m_range = range; }

  /// A subsweep of the sweep, which the caller owns; null when the points are none of such a sweep.
  Subsweep * CreateSubsweep(SweepBase & sweep) const;

private:
  io::ReadError ReadFrom(io::CBlock const & block);
  void WriteTo(io::CBlock & block) const;

  AString m_variable;
  bool m_isSpecial = false;
  val::ParameterType m_type = val::kReal;
  Units::FullUnitType m_units = Units::kNoUnits;
  std::optional<std::vector<unsigned>> m_places;
  std::optional<SteppedRange> m_range;
};
