#pragma once

#include "basekit/text/AString.h"

#include <memory>
#include <vector>

class SubsweepDefParams;
class SweepBase;
template <class T> class AComplex;

/// Which points of one sweep count.  Owned by the SubsweepVector that holds it, else by who made it.  A subsweep may
/// outlive its sweep: it keeps the name then, and has no points.
class Subsweep {
public:
  explicit Subsweep(SweepBase & sweep);
  virtual ~Subsweep();
  Subsweep & operator=(Subsweep const &) = delete;

  virtual std::unique_ptr<Subsweep> Clone() const = 0;
  /// Null when the sweep is gone.
  SweepBase * GetSweep() const { return *m_sweep; }
  /// The name of the sweep's first variable.
  AString GetVariableName() const;

  /// That point of the sweep alone.
  virtual void SetSelection(unsigned place) = 0;
  virtual unsigned GetCount() const = 0;
  /// Append the numbers of the points, in SI units; texts have none.
  virtual void GetRealValues(std::vector<double> & values) const = 0;
  virtual void GetComplexValues(std::vector<AComplex<double>> & values) const = 0;
  /// Gives the sweep's variables their values at a point of this subsweep, counted from 0.
  virtual bool SetSweepValue(unsigned point) const = 0;
  /// The same points of the same sweep.
  virtual bool IsEqual(Subsweep const & other) const = 0;
  virtual std::unique_ptr<SubsweepDefParams> GetDefParams() const = 0;

protected:
  Subsweep(Subsweep const &) = default;

private:
  std::shared_ptr<SweepBase *> m_sweep;
  AString m_lastName;
};
