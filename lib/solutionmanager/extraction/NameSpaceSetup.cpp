#include "solutionmanager/extraction/NameSpaceSetup.h"

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IDesignEditor.h"
#include "basekit/value/Value.h"
#include "plotkit/simvalue/valueutils.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSolutionManager.h"

namespace {

/// The numbers of the extractor options that name spaces ask for.
constexpr int kSearchesIntrinsicVariables = 4;
constexpr int kLeavesOutProjectVariables = 5;

} // namespace

NameSpaceSetup::NameSpaceSetup(BaseSimDataExtractor const & extractor, bool appendToPrevious)
    : m_nameSpace(&extractor, extractor.HasExtractorOption(kSearchesIntrinsicVariables), appendToPrevious) {
  BaseSolutionManager const * const manager = extractor.GetBaseSolutionMgr();
  if (!extractor.HasExtractorOption(kLeavesOutProjectVariables))
    m_nameSpace.AddVariableServer(valueutils::GetProjectVariableServer(manager));
  IDesign const * const design = manager ? manager->GetIDesign() : nullptr;
  if (IDesignEditor const * const editor = design ? design->GetDesignEditor() : nullptr)
    m_nameSpace.AddVariableServer(editor->GetVariableServer());
}

ValueParserSpan::ValueParserSpan(IValueParser * parser) : m_former(Value::SetValueParser(parser)) {}

ValueParserSpan::~ValueParserSpan() { Value::SetValueParser(m_former); }
