#pragma once

#include "plotkit/sweep/Subsweep.h"

/// Points of a sweep with listed values, by their places; places that the sweep doesn't have (any more) don't count.
class IndexedSubsweep : public Subsweep {
public:
  IndexedSubsweep(SweepBase & sweep, bool allPoints) : Subsweep(sweep), m_allPoints(allPoints) {}

  std::unique_ptr<Subsweep> Clone() const override;
  /// True while all points of the sweep count, however many it will have.
  bool AreAllPointsSelected() const { return m_allPoints; }
  void SelectAll();
  void SetSelection(unsigned place) override;
  void SetSelection(std::vector<unsigned> places);
  /// The selected places; empty while all count.
  std::vector<unsigned> const & GetSelection() const { return m_places; }

  unsigned GetCount() const override;
  void GetRealValues(std::vector<double> & values) const override;
  void GetComplexValues(std::vector<AComplex<double>> & values) const override;
  bool SetSweepValue(unsigned point) const override;
  bool IsEqual(Subsweep const & other) const override;
  std::unique_ptr<SubsweepDefParams> GetDefParams() const override;

private:
  unsigned SweepSize() const;
  /// Calls take with the column and the place of each selected number.
  template <class Take> void ForEachNumber(Take take) const;

  bool m_allPoints;
  std::vector<unsigned> m_places;
};
