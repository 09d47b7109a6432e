#pragma once

#include <streambuf>
#include <string_view>
#include <vector>

namespace qsol {

/// Writes all of it to an open descriptor; gives the errno of the first write that failed, 0 when none did.
int WriteWhole(int descriptor, std::string_view bytes) noexcept;

/// A buffer over an open descriptor that remembers why it could not write.
class OutputBuffer : public std::streambuf {
public:
  explicit OutputBuffer(int descriptor);
  /// The errno of the first write that failed; 0 when none did.
  int Error() const { return m_error; }

private:
  int overflow(int character) override;
  int sync() override;

  int m_descriptor;
  int m_error = 0;
  std::vector<char> m_bytes;
};

} // namespace qsol
