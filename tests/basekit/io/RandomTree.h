#pragma once

#include "basekit/io/CBlock.h"

#include <random>

/// Trees of every kind of item, with names, texts and numbers that are easily got wrong.
class RandomTree {
public:
  explicit RandomTree(unsigned seed) : m_random(seed) {}

  io::CBlock Block(int depth = 0);
  AString Text();
  double Real();
  io::CBlock_value Value();
  int Below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }

private:
  void AddItem(io::CBlock & block, int depth);

  std::mt19937_64 m_random;
};
