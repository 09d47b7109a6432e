#pragma once

#include <nlohmann/json.hpp>

#include <iosfwd>
#include <string>

namespace io {
class CBlock;
class CBlock_item;
} // namespace io

namespace qsol {

using Json = nlohmann::ordered_json;
struct Block;
struct OpenedLibrary;

/// Exact; nan and the infinities stand as {"number": "nan"}.
Json NumberOf(double value);
/// What every document begins with: schema version, file, what of it is shown, notices.
Json DocumentHead(OpenedLibrary const & opened);
/// Names, kind, address, size and place of a block.
Json ToJson(Block const & block, OpenedLibrary const & opened);
/// The items of a block, in order.  Numbers are those of NumberOf.
Json ItemsOf(io::CBlock const & block);
/// One item with its name; of a bare value the value.
Json ItemOf(io::CBlock_item const & item);

/// One document with a list that is written as it comes: a library may hold more than memory should.
class JsonListing {
public:
  JsonListing(std::ostream & out, Json const & head, std::string const & list);
  void Add(Json const & element);
  /// The members of the object follow the list.
  void Finish(Json const & behind = Json::object());

private:
  std::ostream & m_out;
  bool m_isFirst = true;
};

} // namespace qsol
