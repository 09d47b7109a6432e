#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/AComplex.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// A variation text, parsed once: pairs of name and value in the order of the names without case.
///
///     C1=1.2pF; L1=4nH; Substrate="FR 4"
///
/// Pairs are parted by ';', spacing and order are free, an empty pair is skipped.  Names and values may stand in double
/// quotes, where \" \\ \n \r \t are escapes; without quotes they end before '=' or ';'.  A text with a pair
/// without '=', an empty name, a name twice, or bad quotes is opaque: it has no pairs and equals only the same text
/// without case.  Parsing is linear but for the sort of a text in another order, and copies nothing but escapes.
class VariationText {
public:
  struct Pair {
    std::wstring_view name;
    std::wstring_view text;
    AComplex<double> number; ///< in SI units
    bool isNumber = false;
  };

  explicit VariationText(AString const & text);

  AString const & GetText() const { return m_source; }
  bool IsOpaque() const { return m_opaque; }
  std::vector<Pair> const & Pairs() const { return m_pairs; }
  /// Null when the name is not there.
  Pair const * Find(std::wstring_view name) const;

  /// The same names hold equal values: numbers within a relative tolerance of 1e-14 in SI units, all else as text
  /// without case.
  friend bool operator==(VariationText const & a, VariationText const & b);
  /// 0, 1, 2: equal, less, greater, in the order of VariableValues::ConstantCompare.
  static int Compare(VariationText const & a, VariationText const & b);

  /// What an index files this text under: a hash of names, texts and coarsely rounded numbers.
  std::uint64_t Key() const;
  /// All keys that an equal text may be filed under, its own first: where a number lies near the edge of its rounding
  /// cell, also the neighbour's.  False when there would be more than maxProbeKeys: all texts are then candidates.
  bool ProbeKeys(std::vector<std::uint64_t> & keys) const;
  static constexpr std::size_t maxProbeKeys = 256;

private:
  AString m_source;
  std::shared_ptr<std::wstring const> m_decoded; ///< the quoted texts that hold escapes
  std::vector<Pair> m_pairs;
  bool m_opaque = false;
};

namespace variation {

/// Writes pairs as a variation text; the caller adds them in order.
class Writer {
public:
  void Add(std::wstring_view name, std::wstring_view value);
  AString Take();

private:
  std::wstring m_text;
};

/// The relative tolerance of numbers in variation texts.
inline constexpr double relativeTolerance = 1e-14;

} // namespace variation
