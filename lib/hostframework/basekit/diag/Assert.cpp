#include "basekit/diag/Assert.h"

#include <cstdio>

bool IgnoreAllAsserts_G = false;

namespace {

void WriteToStandardError(char const * file, int line, char const * condition) {
  std::fprintf(stderr, "%s:%d: assertion failed: %s\n", file, line, condition);
}

AssertHandler s_handler = WriteToStandardError;
unsigned s_generation = 1;

} // namespace

void ProcessAssertFailure_G(char const * file, int line, char const * condition) {
  if (!IgnoreAllAsserts_G)
    s_handler(file, line, condition);
}

AssertHandler SetAssertHandler(AssertHandler handler) {
  AssertHandler const former = s_handler;
  s_handler = handler ? handler : WriteToStandardError;
  return former;
}

void ResetAssertSites() { ++s_generation; }

namespace diag {

void AssertSite::Report(char const * file, int line, char const * condition) {
  if (m_reportedIn == s_generation)
    return;
  m_reportedIn = s_generation;
  ProcessAssertFailure_G(file, line, condition);
}

} // namespace diag
