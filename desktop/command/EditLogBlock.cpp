// The log of edits in a project file:
//
//     Edit {
//       Command = "setup edit Sweep1"
//       Way = "done"
//       Change(What = "setup Sweep1", From = "lin 201 1e7 2e9", To = "lin 401 1e7 2e9")
//       Version(Setup = 3, Solution = 4, V = 0, Source = "...", Settings = "lin 201 1e7 2e9", Invalidated = false)
//       Point("C=1; L=2")
//     }
//
// Edits stand in the order in which versions and points were left, so one whose departures are not neighbours stands
// there several times.
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "desktop/command/EditLog.h"

#include <algorithm>
#include <iterator>

namespace desktop {

namespace {

AString const kEdit(L"Edit");
AString const kCommand(L"Command");
AString const kWay(L"Way");
AString const kChange(L"Change");
AString const kWhat(L"What");
AString const kFrom(L"From");
AString const kTo(L"To");
AString const kVersion(L"Version");
AString const kSetup(L"Setup");
AString const kSolution(L"Solution");
AString const kNumber(L"V");
AString const kSource(L"Source");
AString const kSourceDate(L"SourceDate");
AString const kSourceFiles(L"SourceFiles");
AString const kSettings(L"Settings");
AString const kInvalidated(L"Invalidated");
AString const kPoint(L"Point");
wchar_t const * const kWays[] = {L"done", L"undone", L"redone"};

void WriteStory(EditStory const & story, io::CBlock & edit) {
  edit << io::named(kCommand, story.command) << io::named(kWay, kWays[static_cast<int>(story.way)]);
  for (EditChange const & change : story.changes) {
    io::CBlock_func item(kChange);
    item << io::named(kWhat, change.what) << io::named(kFrom, change.from) << io::named(kTo, change.to);
    edit << item;
  }
}

void WriteDeparture(Departure const & departure, io::CBlock & edit) {
  io::CBlock_func item(kVersion);
  item << io::named(kSetup, departure.object.setupID) << io::named(kSolution, departure.object.solutionID)
       << io::named(kNumber, departure.version) << io::named(kSource, departure.source)
       << io::named(kSourceDate, departure.sourceDate) << io::named(kSourceFiles, departure.sourceFiles)
       << io::named(kSettings, departure.settings) << io::named(kInvalidated, departure.isInvalidation);
  edit << item;
}

// Calls visit for each run of neighbours that share a story.
template <class Items, class Story, class Visit> void ForEachStory(Items const & items, Story story, Visit visit) {
  for (auto first = items.begin(); first != items.end();) {
    auto const end = std::find_if(first, items.end(), [&](auto const & item) { return story(item) != story(*first); });
    visit(*story(*first), first, end);
    first = end;
  }
}

std::shared_ptr<EditStory> ReadStory(io::CBlock const & edit) {
  auto story = std::make_shared<EditStory>();
  AString way;
  edit >> io::named(kCommand, story->command) >> io::named(kWay, way);
  auto const known = std::find(std::begin(kWays), std::end(kWays), way);
  if (known == std::end(kWays))
    return nullptr;
  story->way = static_cast<EditStory::Way>(known - std::begin(kWays));
  return story;
}

bool ReadDeparture(io::CBlock_func const & item, Departure & departure) {
  // Not in older files.
  item >> io::named(kSourceDate, departure.sourceDate) >> io::named(kSourceFiles, departure.sourceFiles);
  item >> io::named(kSetup, departure.object.setupID) >> io::named(kSolution, departure.object.solutionID) >>
      io::named(kSource, departure.source) >> io::named(kSettings, departure.settings) >>
      io::named(kInvalidated, departure.isInvalidation) >> io::named(kNumber, departure.version);
  return item.Found();
}

} // namespace

void EditLog::Write(io::CBlock & block) const {
  std::vector<Entry const *> entries;
  for (auto const & [key, entry] : m_departures)
    entries.push_back(&entry);
  std::sort(entries.begin(), entries.end(), [](auto const * a, auto const * b) { return a->order < b->order; });
  ForEachStory(
      entries, [](Entry const * entry) { return entry->departure.story; },
      [&](EditStory const & story, auto first, auto end) {
        io::CBlock edit(kEdit);
        WriteStory(story, edit);
        for (; first != end; ++first)
          WriteDeparture((*first)->departure, edit);
        block << edit;
      });
  for (auto point = m_points.rbegin(); point != m_points.rend(); ++point) {
    io::CBlock edit(kEdit);
    WriteStory(*point->story, edit);
    io::CBlock_func item(kPoint);
    item << point->variation;
    edit << item;
    block << edit;
  }
}

bool EditLog::Read(io::CBlock const & block) {
  EditLog read;
  *this = EditLog();
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock> const edit(child);
    auto const story = edit ? ReadStory(*edit) : nullptr;
    if (!story)
      return false;
    for (auto const & part : *edit) {
      io::CBlock_ptr<io::CBlock_func> const item(part);
      if (item && item->Name() == kChange) {
        EditChange change;
        *item >> io::named(kWhat, change.what) >> io::named(kFrom, change.from) >> io::named(kTo, change.to);
        story->changes.push_back(change);
      } else if (item && item->Name() == kPoint) {
        PointDeparture point{AString(), story};
        auto place = item->begin();
        if (!item->QueryUnamedValues(place, point.variation))
          return false;
        read.DepartPoint(point);
      } else if (item && item->Name() == kVersion) {
        Departure departure;
        departure.story = story;
        if (!ReadDeparture(*item, departure))
          return false;
        read.Depart(departure);
      }
    }
  }
  *this = std::move(read);
  return true;
}

} // namespace desktop
