// What the design's block tells of an import, in its "Solution", and the library's block behind the numbers:
//
//     Import(Name = "amp", File = "/home/me/amp.s2p", Summary = "2 ports, 201 points from 1e+07 to 2e+09 Hz, 50 ohm")
#include "desktop/product/ImportedSolution.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "desktop/product/IImportProduct.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

namespace desktop {
namespace {

wchar_t const * const kBlockHead = L"ImportedData ";
wchar_t const * const kImport = L"Import";
wchar_t const * const kSetupName = L"Name";
wchar_t const * const kFile = L"File";
wchar_t const * const kSummary = L"Summary";

// Under another name; the items are shared.
io::CBlock Renamed(io::CBlock const & block, AString const & name) {
  io::CBlock renamed(name);
  for (auto const & item : block)
    renamed << item;
  return renamed;
}

} // namespace

AString const ImportedSolution::kName(L"Data");

ImportedSolution::ImportedSolution(BaseSimulationSetup const & setup, long id) : BaseSolution(setup, id, kVersion) {
  SetSolutionName(kName);
}

AString ImportedSolution::BlockNameOf(long setupID) { return kBlockHead + AString::Format(L"%ld", setupID); }

std::optional<long> ImportedSolution::SetupOfBlock(AString const & name) {
  AString const head(kBlockHead);
  AString const digits = name.StartsWith(head) ? name.substr(head.size()) : AString();
  constexpr std::size_t kMostDigits = 18; // of what a long holds for certain
  bool const isNumber = !digits.empty() && digits.size() <= kMostDigits && digits.IsNumber(10);
  long const id = isNumber ? std::stol(std::wstring(digits.View())) : -1;
  return id >= 0 && BlockNameOf(id) == name ? std::optional(id) : std::nullopt;
}

AString ImportedSolution::GetBlockName() const { return BlockNameOf(GetBaseSimulationSetup().GetID()); }

bool ImportedSolution::Keep(ImportedData const & data) {
  m_file = data.file;
  m_summary = data.summary;
  io::CBlock block = Renamed(data.content, GetBlockName());
  WriteOrigin(block);
  return GetSolutionMgr()->SaveSingleBlock(block) == CStreamioLibrary::kLibSuccess;
}

void ImportedSolution::EnterVariation() { EnsureVariation(AString(), kVersion); }

BaseSolutionVariation & ImportedSolution::Load() {
  BaseSolutionVariation & variation = *EnsureVariation(AString(), kVersion);
  io::CBlock block(GetBlockName());
  if (!variation.HasSolutionData() && HasBlock() &&
      GetSolutionMgr()->LoadSingleBlock(block) == CStreamioLibrary::kLibSuccess)
    variation.ReadVariationDataBlock(Renamed(block, variation.GetSolutionVariationKey().Pack()));
  return variation;
}

bool ImportedSolution::HasBlock() const {
  bool isThere = false;
  GetSolutionMgr()->GetSolutionFileManager().GetInternalBlockName(isThere, GetBlockName());
  return isThere;
}

bool ImportedSolution::HasSolutionData(IDesignInstance const *, long version) const {
  return (version == id::invalidID || version == kVersion) && HasBlock();
}

bool ImportedSolution::HasSolutionData(AString const &, long version) const {
  return HasSolutionData(static_cast<IDesignInstance const *>(nullptr), version);
}

bool ImportedSolution::HasValidSolutionData(AString const & variation, long version) const {
  return IsValid() && HasSolutionData(variation, version);
}

AString ImportedSolution::ReadOrigin() {
  io::CBlock block(GetBlockName());
  return GetSolutionMgr()->LoadSingleBlock(block) == CStreamioLibrary::kLibSuccess ? TakeOrigin(block) : AString();
}

void ImportedSolution::WriteOrigin(io::CBlock & block) const {
  io::CBlock_func item(kImport);
  item << io::named(kSetupName, GetBaseSimulationSetup().GetName()) << io::named(kFile, m_file)
       << io::named(kSummary, m_summary);
  block << item;
}

AString ImportedSolution::TakeOrigin(io::CBlock const & block) {
  AString name;
  if (auto const * const item = static_cast<io::CBlock_func *>(block.FindItem(kImport, io::CBlock_item::Kind::Func)))
    *item >> io::named(kSetupName, name) >> io::named(kFile, m_file) >> io::named(kSummary, m_summary);
  return name;
}

io::ReadError ImportedSolution::DesignFileRead(io::CBlock const & block) {
  TakeOrigin(block);
  return BaseSolution::DesignFileRead(block);
}

bool ImportedSolution::DesignFileWrite(io::CBlock & block) {
  WriteOrigin(block);
  return BaseSolution::DesignFileWrite(block);
}

BaseSolutionVariation * LoadVariation(BaseSolution & solution, VariationIDIndex const & index) {
  if (auto * const imported = dynamic_cast<ImportedSolution *>(&solution))
    return &imported->Load();
  return solution.GetVariationData(index, false);
}

} // namespace desktop
