#pragma once

#include <string>
#include <vector>

namespace support {

/// What assertions reported since the test began.  A test that ends with a report it did not expect fails:
/// every test program installs a listener that checks this.
class AssertWatch {
public:
  /// The test expects one report of this text, exactly; it fails when the text does not come.
  static void Expect(std::string const & condition);
  /// Takes the texts reported so far, in order, so that they no longer count as unexpected.
  static std::vector<std::string> Take();
};

} // namespace support
