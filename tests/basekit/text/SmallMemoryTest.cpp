#include "basekit/text/SmallMemory.h"

#include "basekit/text/AString.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <thread>
#include <utility>
#include <vector>

using text::SmallMemory;

TEST(SmallMemory, PiecesAreAlignedAndDoNotOverlap) {
  std::mt19937 random(5);
  std::vector<std::pair<unsigned char *, std::size_t>> taken;
  for (int step = 0; step < 20000; ++step) {
    if (!taken.empty() && random() % 3 == 0) {
      std::swap(taken[random() % taken.size()], taken.back());
      auto const [memory, size] = taken.back();
      for (std::size_t i = 0; i < size; ++i)
        ASSERT_EQ(memory[i], static_cast<unsigned char>(size));
      SmallMemory::Give(memory, size);
      taken.pop_back();
    } else {
      std::size_t const size = random() % (SmallMemory::kLargest + 100);
      auto * const memory = static_cast<unsigned char *>(SmallMemory::Take(size));
      ASSERT_EQ(reinterpret_cast<std::uintptr_t>(memory) % alignof(std::max_align_t), 0u);
      std::memset(memory, static_cast<int>(size), size);
      taken.emplace_back(memory, size);
    }
  }
  for (auto const & [memory, size] : taken)
    SmallMemory::Give(memory, size);
}

TEST(SmallMemory, WhatIsGivenBackServesForTheNextOfItsSize) {
  if (!KVRO_POOLS_SMALL_MEMORY)
    GTEST_SKIP() << "the address sanitizer watches each piece";
  void * const first = SmallMemory::Take(100);
  SmallMemory::Give(first, 100);
  void * const second = SmallMemory::Take(97);
  EXPECT_EQ(second, first);
  SmallMemory::Give(second, 97);
}

TEST(SmallMemory, TextsMayGoInAnotherThreadThanTheyCameFrom) {
  for (int round = 0; round < 50; ++round) {
    std::vector<AString> texts;
    std::thread([&texts] {
      for (int i = 0; i < 1000; ++i)
        texts.push_back(AString::Format(L"variation %d", i));
    }).join();
    for (int i = 0; i < 1000; ++i)
      ASSERT_EQ(texts[static_cast<std::size_t>(i)], AString::Format(L"variation %d", i));
    std::thread([gone = std::move(texts)] {}).join();
  }
}
