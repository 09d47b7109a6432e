// An extractor in the design file.

#include "CoreInterfaces/desktop/IDesign.h"
#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/simvalue/SimValue.h"
#include "plotkit/sweep/SweepBase.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/ExtractorBlocks.h"
#include "solutionmanager/extraction/ExtractorContextSpan.h"
#include "solutionmanager/extraction/NameSpaceSetup.h"
#include "solutionmanager/extraction/PointSetList.h"
#include "solutionmanager/extraction/ReportRegime.h"
#include "solutionmanager/extraction/SweepList.h"
#include "solutionmanager/model/BaseSolutionManager.h"

bool BaseSimDataExtractor::DesignFileWrite(io::CBlock & block) {
  extractorblocks::WriteSimValues(block, mSimValues);
  extractorblocks::WriteSweeps(block, mSweeps);
  if (Regime().AreOldReportStructuresSupported())
    extractorblocks::WritePointSets(block, mSolutionPointSets, mSolutionPointSetIDServer);
  return true;
}

io::ReadError BaseSimDataExtractor::DesignFileRead(io::CBlock const & block) {
  extractorblocks::ReadSimValues(
      block, [this] { return CreateSimValue(); }, [this](SimValue * simValue) { mSimValues.push_back(simValue); });
  OnSimValuesRead();
  if (ClearSweepsOnDesignFileRead())
    SweepList(mSweeps).DeleteAll();
  NameSpaceSetup const names(*this, false);
  IDesign const * const design = GetBaseSolutionMgr()->GetIDesign();
  IDesignEditor * const editor = design ? design->GetDesignEditor() : nullptr;
  bool isComplete =
      extractorblocks::ReadSweeps(block, editor, [this](SweepBase * sweep) { OnReadOfSweepInDesignFileRead(sweep); });
  isComplete = ReadPointSets(block, editor) && isComplete;
  DeleteUnusedSimValues();
  return isComplete ? io::kNoError : io::kWarning;
}

bool BaseSimDataExtractor::ReadPointSets(io::CBlock const & block, IDesignEditor * editor) {
  ValueParserSpan const parser(GetIValueParser());
  // Traces read their words in contexts of their own.
  ExtractorContextSpan const context(this);
  io::CBlock const * const pointSets = extractorblocks::FindPointSets(block);
  if (!pointSets || pointSets->Empty())
    return true;
  mSolutionPointSetIDServer.ResetNextUniqueID(*pointSets);
  return extractorblocks::ReadPointSets(
      *pointSets, editor, [this](io::CBlock const & content) { return AllocSolutionPointSet(content.Name()); },
      [this](SolutionPointSet * pointSet) {
        if (pointSet->GetID() == id::invalidID)
          pointSet->SetID(FetchNextUniqueSolutionPointSetID());
        else
          mSolutionPointSetIDServer.ReserveUniqueID(pointSet->GetID());
        mSolutionPointSets.push_back(pointSet);
      });
}

void BaseSimDataExtractor::DeleteUnusedSimValues() {
  for (auto place = mSimValues.rbegin(); place != mSimValues.rend(); ++place)
    if ((*place)->OKtoDelete()) {
      PointSetList(mSolutionPointSets).ForgetSimValue(**place);
      delete *place;
      *place = nullptr;
    }
  std::erase(mSimValues, nullptr);
}

void BaseSimDataExtractor::OnSimValuesRead() {}

SimValue * BaseSimDataExtractor::CreateSimValue() { return new SimValue; }
