#include "desktop/project/RecordParts.h"

#include "desktop/Error.h"
#include "desktop/command/EditLog.h"
#include "desktop/design/Design.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/PortsOfProject.h"
#include "desktop/project/Project.h"
#include "desktop/project/ProjectFile.h"
#include "desktop/report/ReportList.h"

namespace desktop {

ProjectRecord MakeRecordOf(RecordParts const & parts, ReadMethod method) {
  ProjectRecord record;
  record.productName = parts.product.GetName();
  record.designName = parts.design.GetName();
  record.designID = parts.design.GetDesignID();
  record.sources = parts.project.GetSourceFiles();
  parts.design.Write(record.design);
  WriteSourceBase(parts.project.GetSourceBase(), record.sourceBase);
  parts.edits.Write(record.edits);
  parts.reports.Write(record.reports);
  WritePorts(parts.manager, record.ports);
  WriteConnections(parts.project.GetConnections(), record.connections);
  if (!parts.manager.WriteModule(record.module, method))
    throw Error(ErrorKind::kFailed,
                parts.project.GetFile().FilePath() + L": the product could not write the design; nothing was saved");
  parts.manager.WriteNextUniqueID(record.ids); // Last: what stands above may have issued IDs.
  return record;
}

} // namespace desktop
