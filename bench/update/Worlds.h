#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

class ISolutionPointSet;
class SolutionPointSet;

namespace bench {

struct WorldSize {
  std::string folder;
  std::size_t variations = 0;
  std::size_t frequencies = 0;
};

/// Reports of one trace each over all variations and frequencies of one solution, none of whose data was loaded yet.
class IReports {
public:
  virtual ~IReports() = default;
  /// By number: some are of the complex quantity, others of its level, real part or magnitude.
  virtual SolutionPointSet & Add(std::size_t number) = 0;
  virtual void Update(std::vector<ISolutionPointSet *> const & pointSets) = 0;
  /// How often a variation was loaded.
  virtual std::size_t Loads() const = 0;
};

/// Solved data to which such reports are made, again and again.
class ISolvedData {
public:
  virtual ~ISolvedData() = default;
  virtual std::unique_ptr<IReports> Open() const = 0;
};

/// To load it costs nothing.
std::unique_ptr<ISolvedData> DataInMemory(WorldSize const & size);
/// Of the circuit product, in the saved library of a project.
std::unique_ptr<ISolvedData> DataInLibrary(WorldSize const & size);

} // namespace bench
