#include "products/rfcircuit/product/SweepColumns.h"

#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "products/rfcircuit/engine/sweep/AdaptiveSweep.h"
#include "products/rfcircuit/product/RfSetup.h"
#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/SetupConvDef.h"

#include <memory>

namespace rfcircuit {
namespace {

wchar_t const * const kPassToken = L"Pass";
wchar_t const * const kSolvedToken = L"Solved";
wchar_t const * const kPointsToken = L"Points";
wchar_t const * const kChangeToken = L"Change";
wchar_t const * const kPassiveToken = L"Passive";

} // namespace

AString const SweepColumns::kPass(L"Pass");
AString const SweepColumns::kChange(L"Largest Change");

SetupConvDef const * SweepColumns::MakeDefinitions() {
  auto columns = std::make_unique<SetupConvDef>(RfSetup::kTypeName);
  columns->AddDef(new IntConvDef(kPass, kPassToken, false));
  columns->AddDef(new IntConvDef(L"Points Solved", kSolvedToken, true));
  columns->AddDef(new IntConvDef(L"Points in All", kPointsToken, false));
  columns->AddDef(new DoubleConvDef(kChange, kChangeToken, true));
  columns->AddDef(new StringConvDef(L"Passive", kPassiveToken, false));
  return columns.release();
}

io::CBlock_ptr<io::CBlock_func> SweepColumns::RowOf(rf::SweepPass const & pass) {
  io::CBlockFuncPtr const row(L"c");
  *row << io::named(kPassToken, pass.number) << io::named(kSolvedToken, static_cast<int>(pass.solved))
       << io::named(kPointsToken, static_cast<int>(pass.total));
  if (pass.largestChange)
    *row << io::named(kChangeToken, *pass.largestChange);
  *row << io::named(kPassiveToken, pass.isPassive ? L"yes" : L"no");
  return row.GetTBlockFuncPtr();
}

} // namespace rfcircuit
