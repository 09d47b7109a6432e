#pragma once

#include "bench/model/PlainDesign.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

class BaseSolution;
class BaseSolutionManager;

namespace bench {

/// A design with one solution of `n` solved variations, all saved: each has a block of so many doubles and a
/// convergence block in the library.  The product's hooks cut the definition blocks down to the point that is exported.
class SavedStudy {
public:
  SavedStudy(std::string const & folder, std::size_t n, std::size_t doubles);
  ~SavedStudy();

  BaseSolutionManager const & Manager() const { return *m_manager; }
  AString const & TextOf(std::size_t variation) const { return m_texts[variation]; }
  /// Whether a library holds the point's block with its numbers, and how many other data blocks.
  bool HoldsPoint(AString const & library, std::size_t variation, std::size_t & others) const;

private:
  void Store(std::size_t from, std::size_t to, std::size_t doubles);
  void WriteDefinitions();
  AString NameOf(std::size_t variation) const;

  PlainDesign m_design;
  std::unique_ptr<BaseSolutionManager> m_manager;
  BaseSolution * m_solution = nullptr;
  std::vector<AString> m_texts;
};

} // namespace bench
