#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/io/ReadError.h"
#include "basekit/text/AString.h"

#include <memory>
#include <vector>

class IDesignEditor;
class PostprocessSweep;
class Subsweep;
class SubsweepDefParams;
class Sweep;
class SynchronizedSweep;
namespace Units {
enum FullUnitType : int;
}
namespace io {
class CBlock;
}

/// One independent axis of solved data: one variable, or several that run together, and its values in SI units.
///
/// An extractor owns its sweeps; variables are the design's.  A variable's place counts from 0 up to GetSweepCount, a
/// value's up to GetCount; places past these give nothing.  Subsweeps notice the death of their sweep.
class SweepBase {
public:
  SweepBase();
  virtual ~SweepBase();
  SweepBase(SweepBase const &) = delete;
  SweepBase & operator=(SweepBase const &) = delete;

  virtual Sweep * GetSweep() { return nullptr; }
  virtual SynchronizedSweep * GetSynchronizedSweep() { return nullptr; }
  virtual PostprocessSweep * GetPostprocessSweep() { return nullptr; }
  /// Brings values up to date that follow from other numbers; tells how many there are now.  True when there are any.
  virtual bool UpdateValues(unsigned & count);
  /// A special sweep runs over an intrinsic variable on demand; it belongs to its extractor's table and is not saved.
  virtual bool IsSpecialSweep() const { return m_isSpecial; }
  virtual void SetIsSpecialSweep(bool isSpecial) { m_isSpecial = isSpecial; }
  virtual AString GetName() const;
  /// All points of this sweep, or none yet; the caller owns it.
  virtual Subsweep * CreateSubsweep(bool allPoints) = 0;
  /// What describes the subsweep of all points.
  virtual std::unique_ptr<SubsweepDefParams> CreateSubsweepDefParams() const;
  /// Appends the texts of the values at those places, null meaning all.
  virtual void GetValuesText(std::vector<AString> & texts, std::vector<unsigned> const * places) const;
  virtual AString GetValuesText(wchar_t separator, std::vector<unsigned> const * places) const;
  virtual AString GetSingleValueText(unsigned place) const = 0;
  /// Gives the variables the values at a place; false when there is no such place or no variable.
  virtual bool SetSweepValue(unsigned place) = 0;
  virtual unsigned GetCount() const = 0;
  /// Gives the variables their first values.
  virtual bool InitVariable();
  virtual Variable * GetVariable(unsigned variable) const = 0;
  virtual Units::FullUnitType GetUnits(unsigned variable) const = 0;
  virtual val::ParameterType GetParameterType(unsigned variable) const = 0;
  /// How many variables run together.
  virtual unsigned GetSweepCount() const { return 1; }
  /// Takes over what an edit changed about the variables: their names and units.
  virtual void SynchronizeWithVariable() = 0;
  /// kWarning when the sweep is read but a variable or unit is not known; an error leaves the sweep as it was.
  virtual io::ReadError Read(io::CBlock const & block, IDesignEditor * editor) = 0;
  /// False when there is nothing to be saved.
  virtual bool Write(io::CBlock & block) const = 0;
  virtual AString GetItemName() const = 0;
  /// The name and the values as reports show them.
  virtual AString GetRepVarName() const { return GetName(); }
  virtual AString GetRepSingleValueText(unsigned place) const { return GetSingleValueText(place); }

  /// By name without case.
  bool operator==(AString const & name) const { return AString::MatchNoCase(GetName(), name); }

protected:
  friend class Subsweep;
  /// Points at this sweep while it lives, at null afterwards.
  std::shared_ptr<SweepBase *> const m_self;

private:
  bool m_isSpecial = false;
};
