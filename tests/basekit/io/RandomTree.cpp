#include "tests/basekit/io/RandomTree.h"

#include <bit>
#include <limits>

using namespace io;

CBlock RandomTree::Block(int depth) {
  CBlock block(Text());
  for (int i = Below(6); i > 0; --i)
    AddItem(block, depth);
  return block;
}

AString RandomTree::Text() {
  static constexpr wchar_t alphabet[] = {L'a',    L'Z',   L'_',   L'.',   L'0',  L' ',   L'"',   L'\\',
                                         L'\n',   L'\t',  L'{',   L'}',   L'=',  L',',   0x00E9, 0x4E2D,
                                         0x1F600, 0x0001, 0x007F, 0x2028, L'\0', 0xD800, 0xFEFF, 0xFFFD};
  std::wstring text;
  for (int i = Below(8); i > 0; --i)
    text += alphabet[Below(std::size(alphabet))];
  static constexpr wchar_t const * words[] = {L"true", L"nan", L"none", L"inf", L"-inf", L"5"};
  return Below(10) == 0 ? AString(words[Below(6)]) : AString(std::wstring_view(text));
}

double RandomTree::Real() {
  std::uint64_t const bits = m_random();
  double const any = std::bit_cast<double>(bits);
  static double const special[] = {0.0,
                                   -0.0,
                                   1e9,
                                   5e-324,
                                   std::numeric_limits<double>::max(),
                                   std::numeric_limits<double>::infinity(),
                                   -std::numeric_limits<double>::infinity(),
                                   std::numeric_limits<double>::quiet_NaN()};
  return Below(3) == 0 ? special[Below(8)] : any;
}

CBlock_value RandomTree::Value() {
  switch (Below(5)) {
  case 0:
    return CBlock_value(Text());
  case 1:
    return CBlock_value(Below(2) == 0);
  case 2:
    return CBlock_value(static_cast<long>(m_random()));
  case 3:
    return CBlock_value(Real());
  default:
    return CBlock_value();
  }
}

void RandomTree::AddItem(CBlock & block, int depth) {
  switch (Below(depth < 4 ? 4 : 3)) {
  case 0:
    block << CBlock_named_value(Text(), Value());
    break;
  case 1: {
    CBlock_func func(Text());
    for (int i = Below(10); i > 0; --i)
      Below(4) == 0 ? func.AppendArgument(CBlock_ptr<CBlock_named_value>(new CBlock_named_value(Text(), Value())))
                    : func.AppendArgument(Value());
    block << func;
    break;
  }
  case 2: {
    CBlock_vec vec(Text());
    for (int i = Below(10); i > 0; --i)
      vec << Text();
    block << vec;
    break;
  }
  default:
    block << Block(depth + 1);
  }
}
