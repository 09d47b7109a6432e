#include "bench/store/IEngine.h"
#include "bench/support/Measure.h"

namespace bench {

std::vector<std::string> EngineNames() { return {"raw", "library-binary", "library-text", "manager-binary"}; }

std::unique_ptr<IEngine> MakeEngine(std::string const & name) {
  if (name == "raw")
    return MakeRawEngine();
  if (name == "manager-binary")
    return MakeManagerEngine();
  Require(name == "library-binary" || name == "library-text", "there is no engine " + name);
  return MakeLibraryEngine(name == "library-binary");
}

} // namespace bench
