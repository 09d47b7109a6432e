// The reports in a project file:
//
//     Report {
//       Name = "gain"
//       Setup = "Sweep1"
//       Display = "table"
//       X = "Freq"
//       Y ["dB(S(2,1))"]
//       Over ["C1", "L1"]
//     }
#include "desktop/report/ReportList.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"

namespace desktop {

namespace {

AString const kReport(L"Report");
AString const kName(L"Name");
AString const kSetup(L"Setup");
AString const kSolution(L"Solution");
AString const kDisplay(L"Display");
AString const kX(L"X");
AString const kY(L"Y");
AString const kVariation(L"Variation");
AString const kOver(L"Over");

bool ReadTexts(io::CBlock const & block, AString const & name, std::vector<AString> & texts) {
  io::CBlock_vec vec(name);
  block >> vec;
  return block.Found() && vec.QueryValues(texts);
}

bool IsTextOrMissing(io::CBlock const & block, AString const & name, AString & text) {
  io::CBlock_named_value const * const item =
      static_cast<io::CBlock_named_value const *>(block.FindItem(name, io::CBlock_item::Kind::NamedValue));
  if (!item)
    return true;
  block >> io::named(name, text);
  return block.Found() && !text.empty();
}

// What says which curves there are may not be missing; all else may.
bool ReadReport(io::CBlock const & block, ReportDefinition & report) {
  AString display;
  block >> io::named(kSetup, report.setup) >> io::named(kSolution, report.solution) >> io::named(kDisplay, display);
  block >> io::named(kName, report.name);
  bool const isNamed = block.Found() && !report.name.Trimmed().empty();
  bool isText = IsTextOrMissing(block, kX, report.x) && IsTextOrMissing(block, kVariation, report.variation);
  auto const known = DisplayOf(display);
  report.display = known.value_or(ReportDisplay::kTable);
  bool const hasOver = ReadTexts(block, kOver, report.over) || !block.Found();
  return isNamed && isText && hasOver && known && ReadTexts(block, kY, report.y) && !report.y.empty();
}

AString Name(AString const & name) { return name.empty() ? AString(L"a report without a name") : L"report " + name; }

} // namespace

ReportDefinition const * ReportList::Find(AString const & name) const {
  for (ReportDefinition const & report : m_definitions)
    if (AString::MatchNoCase(report.name, name))
      return &report;
  return nullptr;
}

void ReportList::Write(io::CBlock & block) const {
  for (ReportDefinition const & report : m_definitions) {
    io::CBlock item(kReport);
    item << io::named(kName, report.name);
    if (!report.setup.empty())
      item << io::named(kSetup, report.setup);
    if (!report.solution.empty())
      item << io::named(kSolution, report.solution);
    item << io::named(kDisplay, WordOf(report.display));
    if (!report.x.empty())
      item << io::named(kX, report.x);
    if (!report.variation.empty())
      item << io::named(kVariation, report.variation);
    io::CBlock_vec y(kY);
    y.AppendValues(report.y);
    item << y;
    if (!report.over.empty()) {
      io::CBlock_vec over(kOver);
      over.AppendValues(report.over);
      item << over;
    }
    block << item;
  }
}

void ReportList::Read(io::CBlock const & block, std::vector<AString> & notices) {
  m_definitions.clear();
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock> const item(child);
    ReportDefinition report;
    if (!item || item->Name() != kReport || !ReadReport(*item, report))
      notices.push_back(Name(report.name) + L": its definition in the project file is damaged and was left out; add "
                                            L"the report anew");
    else if (Find(report.name))
      notices.push_back(Name(report.name) + L": stands twice in the project file; the second one was left out");
    else
      m_definitions.push_back(std::move(report));
  }
}

} // namespace desktop
