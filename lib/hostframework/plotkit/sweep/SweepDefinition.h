#pragma once

#include "basekit/io/CStreamio_block_object.h"
#include "basekit/text/AString.h"

#include <vector>

class IDesign;
class Sweep;

/// One sweep as a setup's settings tell it: which variable runs over which values, in SI units.
///
/// A plain record: it owns no memory, its texts are interned for the life of the program, so that freeing its storage
/// without a destructor loses nothing.  Setups made from one another share a record and count as its holders;
/// FreeStorage frees it with the last of them.
class SweepDefinition : public io::CStreamio_block_object {
public:
  enum SweepType : int {
    kNoSweepType = 0,
    kLinearStep = 1,
    kDecadeCount = 2,
    kOctaveCount = 3,
    kExponentialCount = 4,
    kLinearCount = 5,
    kNumOfSweepType = 6 ///< no such sweep
  };

  /// What exponential sweeps take as e.
  static constexpr double kExponentialBase = 2.718281828;

  SweepDefinition();
  SweepDefinition(AString const & variable, SweepType type, double start, double stop);

  /// The name of the blocks that hold sweep definitions.
  static AString GetDataKeyword();
  /// The word of a type in files, empty for kNoSweepType and for anything that is no type.
  static AString GetSweepTypeName(SweepType type);
  /// By word without case; kNumOfSweepType for a word that is none.
  static SweepType GetSweepType(AString const & name);
  /// Appends count values from start to stop; flags must be 0.
  static void GetLinearCountDoubles(double start, double stop, unsigned count, int flags, std::vector<double> & values);

  AString GetItemName() const override { return GetDataKeyword(); }
  /// Reading gives kNotFound without a variable and kBadContent for an unknown type; other items may be absent.
  io::ReadError DoDataExchange(io::CBlock & block, bool reading) override;

  AString const & GetVariableName() const { return *m_variableName; }
  void SetVariableName(AString const & name);
  SweepType GetType() const { return m_type; }
  void SetType(SweepType type) { m_type = type; }
  double GetStart() const { return m_start; }
  double GetStop() const { return m_stop; }
  void SetRange(double start, double stop) { m_start = start, m_stop = stop; }
  /// The distance of samples of a stepped sweep.
  double GetStep() const { return m_step; }
  void SetStep(double step) { m_step = step; }
  /// The count of a counted sweep: of all samples, or of those to a decade, octave or factor of e.
  unsigned GetCount() const { return m_count; }
  void SetCount(unsigned count) { m_count = count; }
  /// Sweeps of the same number, other than 0, run together.
  unsigned GetSynchronizeNumber() const { return m_synchronizeNumber; }
  void SetSynchronizeNumber(unsigned number) { m_synchronizeNumber = number; }
  int GetOffsetF1Flag() const { return m_offsetF1Flag; }
  void SetOffsetF1Flag(int flag) { m_offsetF1Flag = flag; }
  /// Appends the values of the sweep; none for a definition without a type.
  void GetValues(std::vector<double> & values) const;

  /// A new sweep over the design's variable, or the intrinsic one, of that name; a name that the design doesn't know
  /// is kept without a variable.  The caller owns the sweep.
  Sweep * CreateSweep(IDesign const & design, bool rising) const;
  /// Gives the sweep the values of this definition; with rising in rising order, each once.
  void ParseSweepData(Sweep & sweep, bool rising) const;

  bool operator==(SweepDefinition const & other) const;

  /// Counts one more holder.
  void Share() { ++m_holders.count; }
  /// One holder gives the record up; the last frees the storage as it is, without a destructor.  Null is allowed.
  static void FreeStorage(SweepDefinition * definition);

private:
  /// A copy has one holder of its own.
  struct HolderCount {
    HolderCount() = default;
    HolderCount(HolderCount const &) {}
    HolderCount & operator=(HolderCount const &) { return *this; }
    unsigned count = 1;
  };

  void ExchangeOffsetF1(io::CBlock & block, bool reading);

  AString const * m_variableName;
  SweepType m_type = kNoSweepType;
  double m_start = 0.0;
  double m_stop = 0.0;
  double m_step = 0.0;
  unsigned m_count = 0;
  unsigned m_synchronizeNumber = 0;
  int m_offsetF1Flag = 0;
  HolderCount m_holders;
};
