#include "plotkit/Trace.h"

Trace::~Trace() = default;
