// The keys by which an index finds variations that may be equal: numbers are rounded to cells of about 1.5e-11 of their
// magnitude, far wider than the tolerance, so that equal numbers lie in one cell or on both sides of one edge.

#include "basekit/text/CaseFolding.h"
#include "basekit/value/variation/VariationText.h"

#include <bit>

namespace {

constexpr int cellBits = 16;
constexpr std::uint64_t halfCell = 1u << (cellBits - 1);
// A relative distance of 1e-14 is at most 91 steps between neighbouring doubles.
constexpr std::uint64_t toleranceSteps = 96;

std::uint64_t Mixed(std::uint64_t value) {
  value += 0x9e3779b97f4a7c15u;
  value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9u;
  value = (value ^ (value >> 27)) * 0x94d049bb133111ebu;
  return value ^ (value >> 31);
}

std::uint64_t FoldedHash(std::wstring_view text, std::uint64_t seed) {
  std::uint64_t hash = seed ^ 0xcbf29ce484222325u;
  for (wchar_t const c : text)
    hash = (hash ^ static_cast<std::uint64_t>(text::FoldCase(c))) * 0x100000001b3u;
  return Mixed(hash);
}

// The cells that a number equal to this one may lie in, its own first.  Doubles of one sign are ordered as their bits
// are; cells are shifted by half, so that short numbers lie amid theirs and not on an edge.
struct Cells {
  explicit Cells(double number) {
    double const magnitude = number < 0 ? -number : number;
    std::uint64_t const sign = number < 0 ? std::uint64_t(1) << 63 : 0;
    std::uint64_t const steps = number == 0 ? 0 : std::bit_cast<std::uint64_t>(magnitude);
    std::uint64_t const below = steps > toleranceSteps ? steps - toleranceSteps : 0;
    std::uint64_t const ownCell = CellOf(steps);
    std::uint64_t const otherCell = CellOf(below) != ownCell ? CellOf(below) : CellOf(steps + toleranceSteps);
    own = ownCell | sign;
    other = otherCell | sign;
  }
  static std::uint64_t CellOf(std::uint64_t steps) { return (steps + halfCell) >> cellBits; }

  std::uint64_t own;
  std::uint64_t other;
};

// The hashes of one pair: one for each combination of cells.
struct PairHashes {
  explicit PairHashes(VariationText::Pair const & pair) {
    std::uint64_t const name = FoldedHash(pair.name, 1);
    if (!pair.isNumber) {
      hashes[count++] = Mixed(name ^ FoldedHash(pair.text, 2));
      return;
    }
    Cells const real(pair.number.real());
    Cells const imaginary(pair.number.imag());
    for (int choice = 0; choice < 4; ++choice) {
      bool const realOther = (choice & 1) != 0;
      bool const imaginaryOther = (choice & 2) != 0;
      if ((realOther && real.other == real.own) || (imaginaryOther && imaginary.other == imaginary.own))
        continue;
      hashes[count++] = Mixed(Mixed(name ^ Mixed(realOther ? real.other : real.own)) ^
                              (imaginaryOther ? imaginary.other : imaginary.own));
    }
  }

  std::uint64_t hashes[4];
  std::size_t count = 0;
};

} // namespace

// Sums of pair hashes, so that one pair's cell can be exchanged in a finished key.
std::uint64_t VariationText::Key() const {
  if (m_opaque)
    return FoldedHash(m_source.View(), 3);
  std::uint64_t key = 0;
  for (Pair const & pair : m_pairs)
    key += PairHashes(pair).hashes[0];
  return key;
}

bool VariationText::ProbeKeys(std::vector<std::uint64_t> & keys) const {
  keys.assign(1, Key());
  for (Pair const & pair : m_pairs) {
    PairHashes const hashes(pair);
    std::size_t const before = keys.size();
    if (before * hashes.count > maxProbeKeys) {
      keys.clear();
      return false;
    }
    for (std::size_t choice = 1; choice < hashes.count; ++choice)
      for (std::size_t index = 0; index < before; ++index)
        keys.push_back(keys[index] - hashes.hashes[0] + hashes.hashes[choice]);
  }
  return true;
}
