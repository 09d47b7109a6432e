// A point set in a block:
//
//     Name = "Sweep:SolutionPointSet 1"
//     ID = 1
//     Version = 17
//     Shared = true
//     Instance = 2                                     the ID of the design instance, when there is one
//     DesignVariation = "C1=1.2pF"
//     Context(3, 0, 2, 0, 1, 1, 0, 0)
//     Subsweep { Variable = "F" }                      one for each subsweep, in order; the sweep is the extractor's
//     Trace2D { ... }                                  one for each trace, in order, named by its class

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "CoreInterfaces/solution/ISimDataExtractor.h"
#include "CoreInterfaces/solution/ISolutionMgr.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/value/Value.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/sweep/SubsweepDefParams.h"
#include "plotkit/sweep/Sweep.h"
#include "plotkit/trace/Trace.h"

namespace {

wchar_t const * const kName = L"Name";
wchar_t const * const kID = L"ID";
wchar_t const * const kVersion = L"Version";
wchar_t const * const kShared = L"Shared";
wchar_t const * const kInstance = L"Instance";
wchar_t const * const kDesignVariation = L"DesignVariation";
wchar_t const * const kContext = L"Context";

/// The sweep that a subsweep of a file is of; a special one is made where its variable is intrinsic.
SweepBase * FindSweep(ISimDataExtractor const & extractor, SubsweepDefParams const & params) {
  AString const & name = params.GetVariableName();
  if (!params.IsSpecial())
    return extractor.GetSweep(name);
  if (Sweep * const special = extractor.GetSpecialSweep(name))
    return special;
  if (!Value::GetIntrinsicVariable(name))
    return nullptr;
  return extractor.CreateSpecialSweep(name, params.GetParameterType(), params.GetUnits());
}

} // namespace

IDesignInstance * SolutionPointSet::FindInstance(long id) const {
  ISolutionMgr const * const manager = m_extractor.GetISolutionMgr();
  IDesign const * const design = manager ? manager->GetIDesign() : nullptr;
  std::vector<IDesignInstance *> instances;
  if (design)
    design->GetDesignInstances(instances);
  for (IDesignInstance * const instance : instances)
    if (instance && instance->GetID() == id)
      return instance;
  return nullptr;
}

io::ReadError SolutionPointSet::ReadSubsweeps(io::CBlock const & block, SubsweepVector & subsweeps) const {
  for (auto const & child : block) {
    SubsweepDefParams params;
    if (!child->IsBlock() || !AString::MatchNoCase(child->Name(), params.GetItemName()))
      continue;
    if (io::ReadError const error = params.Read(static_cast<io::CBlock const &>(*child)))
      return error;
    SweepBase * const sweep = FindSweep(m_extractor, params);
    Subsweep * const subsweep = sweep ? params.CreateSubsweep(*sweep) : nullptr;
    if (!subsweep)
      return io::kBadContent;
    subsweeps.push_back(subsweep);
  }
  return io::kNoError;
}

io::ReadError SolutionPointSet::ReadTraces(io::CBlock const & block) {
  io::CReadError result;
  for (auto const & child : block) {
    std::unique_ptr<Trace> trace = child->IsBlock() ? Trace::Make(child->Name(), *this) : nullptr;
    if (!trace)
      continue;
    // One that can't be read is left out, the others serve.
    if (trace->Read(static_cast<io::CBlock const &>(*child)) != io::kNoError) {
      result += io::kWarning;
      continue;
    }
    if (trace->GetName().empty())
      SetUniqueTraceName(trace.get());
    AddTraceToList(trace.release());
  }
  return result;
}

io::ReadError SolutionPointSet::Read(io::CBlock const & block, IDesignEditor *) {
  SubsweepVector subsweeps;
  if (io::ReadError const error = ReadSubsweeps(block, subsweeps))
    return error;
  auto const * const context =
      static_cast<io::CBlock_func const *>(block.FindItem(kContext, io::CBlock_item::Kind::Func));
  if (context) {
    auto place = context->begin();
    if (!m_context.ReadFrom(*context, place))
      return io::kBadContent;
  }
  m_subsweeps = std::move(subsweeps);
  block >> io::named(kID, m_id);
  block >> io::named(kVersion, m_solutionVersionID);
  block >> io::named(kShared, m_isShared);
  io::CReadError result;
  long instanceID = id::invalidID;
  block >> io::named(kInstance, instanceID);
  if (block.Found()) {
    SetIDesignInstance(FindInstance(instanceID));
    result += m_instance ? io::kNoError : io::kWarning;
  }
  block >> io::named(kDesignVariation, m_designVariation);
  block >> io::named(kName, m_name);
  result += block.Found() ? io::kNoError : io::kWarning;
  result += ReadTraces(block);
  return result;
}

bool SolutionPointSet::Write(io::CBlock & block) const {
  block << io::named(kName, m_name) << io::named(kID, m_id) << io::named(kVersion, m_solutionVersionID)
        << io::named(kShared, m_isShared);
  if (m_instance)
    block << io::named(kInstance, m_instance->GetID()) << io::named(kDesignVariation, m_designVariation);
  io::CBlock_func context{AString(kContext)};
  m_context.WriteTo(context);
  block << context;
  for (Subsweep const * const subsweep : m_subsweeps) {
    auto const params = subsweep->GetDefParams();
    io::CBlock_ptr<io::CBlock> const child(new io::CBlock(params->GetItemName()));
    if (!params->Write(*child))
      return false;
    block << child;
  }
  for (Trace const * const trace : m_traces) {
    io::CBlock_ptr<io::CBlock> const child(new io::CBlock(trace->GetItemName()));
    if (trace->Write(*child))
      block << child;
  }
  return true;
}
