#include "basekit/text/CaseFolding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace {

// Of letters that fold and of what stands next to them.
std::wstring RandomText(std::mt19937 & random, std::size_t length) {
  static std::wstring const characters =
      L"@AZ[`az{\x7f\x80\xc0\xde\xe0\xfe\x100\x101\x410\x430\x1E00\x1E01\x10FFFF 0=;";
  std::wstring text;
  while (text.size() < length)
    text += characters[random() % characters.size()];
  return text;
}

std::wstring Folded(std::wstring text) {
  std::transform(text.begin(), text.end(), text.begin(), text::FoldCase);
  return text;
}

} // namespace

TEST(CaseFolding, TextsThatAreEqualWithoutCaseHaveOneHash) {
  std::mt19937 random(7);
  for (int round = 0; round < 2000; ++round) {
    std::wstring const text = RandomText(random, static_cast<std::size_t>(round) % 19);
    EXPECT_EQ(text::HashNoCase(text), text::HashNoCase(Folded(text)));
  }
}

TEST(CaseFolding, TextsThatDifferInOneCharacterHaveDifferentHashes) {
  std::wstring const text = L"C1=1.25pF; L1=4.7nH; W1=0.35mm";
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::wstring other = text;
    other[i] = L'#';
    EXPECT_NE(text::HashNoCase(text), text::HashNoCase(other)) << i;
    EXPECT_NE(text::HashNoCase(text), text::HashNoCase(text.substr(0, i))) << i;
  }
}

TEST(CaseFolding, ComparesByTheFoldedCharacters) {
  std::mt19937 random(11);
  auto const sign = [](int order) { return (order > 0) - (order < 0); };
  for (int round = 0; round < 5000; ++round) {
    std::wstring const a = RandomText(random, random() % 9);
    std::wstring b = random() % 2 == 0 ? Folded(a) : RandomText(random, random() % 9);
    if (random() % 4 == 0)
      b = a + b;
    std::wstring const foldedA = Folded(a);
    std::wstring const foldedB = Folded(b);
    EXPECT_EQ(text::CompareNoCase(a, b), sign(foldedA < foldedB ? -1 : foldedA == foldedB ? 0 : 1));
  }
}
