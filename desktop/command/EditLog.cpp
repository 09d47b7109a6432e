#include "desktop/command/EditLog.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace desktop {

void EditLog::Depart(Departure departure) {
  auto const key = std::make_pair(departure.object, departure.version);
  m_departures[key] = Entry{++m_lastOrder, std::move(departure)};
}

void EditLog::Arrive(VersionedObject object, long version) { m_departures.erase({object, version}); }

Departure const * EditLog::Find(VersionedObject object, long version) const {
  auto const at = m_departures.find({object, version});
  return at == m_departures.end() ? nullptr : &at->second.departure;
}

std::optional<long> EditLog::VersionOf(VersionedObject object, AString const & source, AString const & settings) const {
  Entry const * last = nullptr;
  long lastInvalidation = 0;
  auto at = m_departures.lower_bound({object, std::numeric_limits<long>::min()});
  for (; at != m_departures.end() && at->first.first == object; ++at) {
    Departure const & departure = at->second.departure;
    if (departure.isInvalidation)
      lastInvalidation = std::max(lastInvalidation, at->second.order);
    bool const isSame = departure.source == source && departure.settings == settings;
    if (isSame && (!last || last->order < at->second.order))
      last = &at->second;
  }
  return last && last->order > lastInvalidation ? std::optional(last->departure.version) : std::nullopt;
}

void EditLog::ForEachSource(
    std::function<void(VersionedObject const & object, long version, AString & source)> const & visit) {
  for (auto & [key, entry] : m_departures)
    visit(key.first, key.second, entry.departure.source);
}

void EditLog::DepartPoint(PointDeparture departure) {
  ArrivePoint(departure.variation);
  m_points.push_front(std::move(departure));
  if (m_points.size() > kMostPoints)
    m_points.pop_back();
}

void EditLog::ArrivePoint(AString const & variation) {
  m_points.remove_if([&](PointDeparture const & point) { return point.variation == variation; });
}

void EditLog::Keep(std::function<bool(VersionedObject object, long version)> const & isKept) {
  for (auto at = m_departures.begin(); at != m_departures.end();)
    at = at->second.departure.isInvalidation || isKept(at->first.first, at->first.second) ? std::next(at)
                                                                                          : m_departures.erase(at);
}

} // namespace desktop
