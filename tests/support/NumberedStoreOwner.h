#pragma once

#include "basekit/text/AString.h"
#include "solutionmanager/address/VariationIDIndex.h"
#include "solutionmanager/locations/IMirroredDataMapOwner.h"

#include <limits>
#include <string_view>

namespace support {

/// Base of the owners of mirrored stores that are no product: files are called <prefix><variation ID>_<version>, with
/// _<identifier of the number> behind where there are numbers.  New identifiers are counted, and what the stores
/// announce is ignored.
class NumberedStoreOwner : public IMirroredDataMapOwner {
public:
  long GetNewID() override { return nextID++; }
  void ParseRelativeDoubleLocation(AString const & location, AString const & keyword, VariationIDIndex & key,
                                   long & doubleID) override {
    ParseRelativeLocation(location, keyword, key);
    Numbers const numbers = NumbersIn(location, keyword);
    if (numbers.count == 3)
      doubleID = numbers.values[2];
  }
  void ParseRelativeLocation(AString const & location, AString const & keyword, VariationIDIndex & key) override {
    Numbers const numbers = NumbersIn(location, keyword);
    if (numbers.count >= 2)
      key = VariationIDIndex(GetVariationFromID(numbers.values[0]), numbers.values[1], numbers.values[0]);
  }
  AString GetRelativeDoubleLocation(AString const & keyword, VariationIDIndex const & key, long doubleID) override {
    return GetRelativeLocation(keyword, key) + AString::Format(L"_%ld", doubleID);
  }
  AString GetRelativeLocation(AString const & keyword, VariationIDIndex const & key) override {
    return PrefixOf(keyword) + AString::Format(L"%ld_%ld", key.GetVariationID(), key.GetVersionID());
  }
  void OnCommitDoubleLocation(AString const &, long, long, double, AString const &, AString &) override {}
  void OnCommitLocation(AString const &, long, long, AString const &, AString &) override {}
  void OnDeleteDoubleLocation(AString const &, long, long, double, AString const &) override {}
  void OnDeleteLocation(AString const &, long, long, AString const &) override {}
  void OnMoveDoubleLocation(AString const &, long, long, double, AString const &) override {}
  void OnMoveLocation(AString const &, long, long, AString const &) override {}
  void GetSingleVariationToWrite(bool &, long &, AString &) override {}
  void GetWriteMode(bool &, bool &) override {}

  long nextID = 100;

protected:
  virtual AString PrefixOf(AString const & keyword) const = 0;

private:
  struct Numbers {
    int count = 0;
    long values[3] = {};
  };

  /// Those behind the prefix, parted by underlines; one that is too long for a long ends where it still fits.
  Numbers NumbersIn(AString const & location, AString const & keyword) const {
    Numbers numbers;
    AString const prefix = PrefixOf(keyword);
    std::wstring_view rest = location.View();
    if (!rest.starts_with(prefix.View()))
      return numbers;
    rest.remove_prefix(prefix.size());
    while (numbers.count < 3) {
      std::size_t digits = 0;
      long value = 0;
      for (; digits < rest.size() && rest[digits] >= L'0' && rest[digits] <= L'9'; ++digits) {
        long const digit = rest[digits] - L'0';
        if (value > (std::numeric_limits<long>::max() - digit) / 10)
          break;
        value = value * 10 + digit;
      }
      if (digits == 0)
        break;
      numbers.values[numbers.count++] = value;
      rest.remove_prefix(digits);
      if (rest.empty() || rest.front() != L'_')
        break;
      rest.remove_prefix(1);
    }
    return numbers;
  }
};

} // namespace support
