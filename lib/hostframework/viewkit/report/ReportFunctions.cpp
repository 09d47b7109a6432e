#include "viewkit/report/ReportFunctions.h"

#include "basekit/value/Value.h"

namespace rep {

int GetFunctionID(AString const & name) { return Value::GetFunctionID(name); }

AString GetFunctionName(int id) { return id == kNoFunctionID ? AString(L"<none>") : Value::GetFunctionName(id); }

} // namespace rep
