#pragma once

#include "solutionmanager/address/VariationIDIndex.h"

#include <map>

/// The records that a setup holds per variation and version; whoever holds the map owns them.
template <class Record> using RecordMap = std::map<VariationIDIndex, Record *>;

/// Null when the map has none.
template <class Record> Record * FindRecord(RecordMap<Record> const & records, VariationIDIndex const & index) {
  auto const at = records.find(index);
  return at == records.end() ? nullptr : at->second;
}

/// The record that is there, or one made of the arguments.
template <class Record, class... Arguments>
Record & FindOrMakeRecord(RecordMap<Record> & records, VariationIDIndex const & index, Arguments const &... arguments) {
  auto at = records.lower_bound(index);
  if (at == records.end() || index < at->first)
    at = records.emplace_hint(at, index, new Record(arguments...));
  return *at->second;
}
