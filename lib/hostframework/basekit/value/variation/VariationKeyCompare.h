#pragma once

#include "basekit/value/variation/VariationText.h"

/// A variation text to be compared with others by value; parsed when it is made.
class VariationKeyCompare {
public:
  explicit VariationKeyCompare(AString const & variation) : m_text(variation) {}

  friend bool operator==(VariationKeyCompare const & a, VariationKeyCompare const & b) { return a.m_text == b.m_text; }
  friend bool operator<(VariationKeyCompare const & a, VariationKeyCompare const & b) {
    return VariationText::Compare(a.m_text, b.m_text) == 1;
  }

private:
  VariationText m_text;
};
