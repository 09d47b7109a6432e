#pragma once

#include "bench/model/PlainDesign.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

class BaseSolution;
class BaseSolutionManager;
class SetupConvDef;

namespace bench {

/// Where the data of a solved variation is.
enum class DataPlace { Memory, Library };

/// One design with one solution that has `n` solved variations, all valid; variations and library are gone at its end.
class Model {
public:
  Model(std::string const & folder, std::size_t n, DataPlace place);
  ~Model();

  BaseSolutionManager & Manager() { return *m_manager; }
  BaseSolution & Solution() { return *m_solution; }
  /// What a solve tells of each pass: two numbers.
  SetupConvDef const & Columns() const { return *m_columns; }
  std::vector<AString> const & Texts() const { return m_texts; }
  /// The version at which all variations were solved.
  long SolvedVersion() const { return m_solvedVersion; }
  /// Heap taken by the table of variation IDs, the solution's variations and their texts.
  std::size_t BytesPerVariation() const { return m_bytesPerVariation; }

  /// The text of a variation; numbers beyond the solved ones give new variations.
  static AString Text(std::size_t number);
  /// The same variation, its variables in another order and its values in other units.
  static AString WrittenDifferently(std::size_t number);

private:
  void Store(std::size_t from, std::size_t to);

  PlainDesign m_design;
  std::unique_ptr<BaseSolutionManager> m_manager;
  BaseSolution * m_solution = nullptr;
  SetupConvDef * m_columns = nullptr;
  std::vector<AString> m_texts;
  long m_solvedVersion = 0;
  std::size_t m_bytesPerVariation = 0;
};

} // namespace bench
