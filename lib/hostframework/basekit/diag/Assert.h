#pragma once

/// Assertions are reports, not stops: the code goes on with the default that the operation tells.
/// A site reports once; ResetAssertSites makes every site new again (tests call it).

using AssertHandler = void (*)(char const * file, int line, char const * condition);

/// Hands a failed condition to the handler; the default handler writes one line to stderr.
void ProcessAssertFailure_G(char const * file, int line, char const * condition);

/// While true, no assertion reports anything.
extern bool IgnoreAllAsserts_G;

/// Installs a handler (null: the default one) and gives back the former.
AssertHandler SetAssertHandler(AssertHandler handler);
void ResetAssertSites();

namespace diag {

/// Remembers that its place in the source has reported.
class AssertSite {
public:
  void Report(char const * file, int line, char const * condition);

private:
  unsigned m_reportedIn = 0;
};

} // namespace diag

/// Reports the condition's own text when it is false:  KVRO_ASSERT(design);  KVRO_ASSERT(!"Duplicate entry");
#define KVRO_ASSERT(condition)                                                                                         \
  do {                                                                                                                 \
    if (!(condition)) {                                                                                                \
      static diag::AssertSite kvroAssertSite;                                                                          \
      kvroAssertSite.Report(__FILE__, __LINE__, #condition);                                                           \
    }                                                                                                                  \
  } while (false)
