#pragma once

#include "products/rfcircuit/engine/netlist/CaseFolding.h"

#include <cstdint>
#include <string_view>

namespace rf {

/** A number for a sequence of statements: equal for equal ones, blanks counted once.  (FNV-1a, 64 bits.) */
class StatementFingerprint {
public:
  void Add(std::string_view statement) {
    bool isAfterBlank = true;
    for (char const c : statement) {
      if (!IsBlank(c))
        AddByte(c);
      else if (!isAfterBlank)
        AddByte(' ');
      isAfterBlank = IsBlank(c);
    }
    AddByte('\n');
  }

  std::uint64_t Value() const { return m_Value; }

private:
  void AddByte(char c) { m_Value = (m_Value ^ static_cast<unsigned char>(c)) * 0x100000001b3u; }

  std::uint64_t m_Value = 0xcbf29ce484222325u;
};

} // namespace rf
