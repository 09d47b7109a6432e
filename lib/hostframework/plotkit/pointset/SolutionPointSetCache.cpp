// What a point set's sim values gave, in a block of its own:
//
//     SolutionPointSet_3 {
//       Design = "Filter"                     whose numbers these are
//       DesignID = 1
//       Solution = 12
//       ...                                   as the cache writes itself
//     }

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "CoreInterfaces/solution/ISolutionMgr.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "plotkit/pointset/SolutionPointSet.h"

namespace {

wchar_t const * const kDesign = L"Design";
wchar_t const * const kDesignID = L"DesignID";
wchar_t const * const kSolution = L"Solution";

struct Origin {
  AString design;
  long designID = id::invalidID;
  long solutionID = id::invalidID;

  friend bool operator==(Origin const & a, Origin const & b) = default;
};

Origin OriginOf(SolutionPointSet const & pointSet) {
  ISolutionMgr const * const manager = pointSet.GetISimDataExtractor()->GetISolutionMgr();
  IDesign const * const design = manager ? manager->GetIDesign() : nullptr;
  return {design ? design->GetName() : AString(), design ? design->GetDesignID() : id::invalidID,
          pointSet.GetSolutionID()};
}

bool ReadOrigin(io::CBlock const & block, Origin & origin) {
  block >> io::named(kDesign, origin.design);
  bool isComplete = block.Found();
  block >> io::named(kDesignID, origin.designID);
  isComplete = block.Found() && isComplete;
  block >> io::named(kSolution, origin.solutionID);
  return block.Found() && isComplete;
}

} // namespace

io::ReadError SolutionPointSet::DoDataExchangeSimValueCache(io::CBlock & block, bool reading) {
  AString const name = AString::Format(L"%s_%ld", kSolutionPointSetKeyword, m_id);
  Origin const own = OriginOf(*this);
  if (!reading) {
    io::CBlock_ptr<io::CBlock> const child(new io::CBlock(name));
    *child << io::named(kDesign, own.design) << io::named(kDesignID, own.designID)
           << io::named(kSolution, own.solutionID);
    m_cache.Write(*child);
    block << child;
    return io::kNoError;
  }
  io::CBlock const * const child = block.FindBlock(name);
  if (!child)
    return io::kNotFound;
  Origin written;
  if (!ReadOrigin(*child, written) || written != own)
    return io::kBadContent;
  return m_cache.Read(*child, m_solutionVersionID);
}
