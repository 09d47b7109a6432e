#pragma once

enum class ReadMethod : int;

namespace desktop {

class Design;
class EditLog;
class IDesktopProduct;
class ProductSolutionManager;
class Project;
class ReportList;
struct ProjectRecord;

/// What a project file is made of.
struct RecordParts {
  IDesktopProduct const & product;
  Project const & project;
  Design const & design;
  ProductSolutionManager const & manager;
  EditLog const & edits;
  ReportList const & reports;
};

/// As the parts are now, without a generation; an Error when the product can't write the design.
ProjectRecord MakeRecordOf(RecordParts const & parts, ReadMethod method);

} // namespace desktop
