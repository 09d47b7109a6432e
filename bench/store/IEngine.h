#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace bench {

/// A store of named runs of doubles, as the workloads see it.  Blocks go by number from 1.  What Prepare makes, the
/// form in which a caller of the store would hold its blocks, is no part of the store's work and not timed.  A failure
/// throws.
class IEngine {
public:
  enum class Purpose { Work, List, Recover };

  virtual ~IEngine() = default;
  virtual void Open(std::string const & folder, Purpose purpose) = 0;
  /// Asks for the names of all blocks; returns how many there are.
  virtual std::size_t List() = 0;
  virtual void Prepare(std::span<std::size_t const> numbers, std::size_t payload, std::size_t version) = 0;
  /// The same for those who need no content.
  virtual void PrepareNames(std::span<std::size_t const> numbers) = 0;
  /// Of the blocks that are prepared, by place.
  virtual void Save(std::size_t place) = 0;
  virtual void SaveAll() = 0;
  virtual std::span<double const> Load(std::size_t place) = 0;
  virtual void DeleteAll() = 0;
  virtual void Commit() = 0;
  /// Drops dead space.
  virtual void Rewrite() = 0;
};

std::vector<std::string> EngineNames();
std::unique_ptr<IEngine> MakeEngine(std::string const & name);

std::unique_ptr<IEngine> MakeLibraryEngine(bool isBinary);
std::unique_ptr<IEngine> MakeManagerEngine();
std::unique_ptr<IEngine> MakeRawEngine();

} // namespace bench
