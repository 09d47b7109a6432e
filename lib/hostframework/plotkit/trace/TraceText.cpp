#include "plotkit/trace/TraceText.h"

AString const TraceText::kTraceTextKeyword(L"TraceText");

TraceText::~TraceText() = default;

AString TraceText::GetItemName() const { return kTraceTextKeyword; }
