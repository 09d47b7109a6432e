#pragma once

namespace desktop {

/// What a product adds whose sources are whole: a solve reads the files that SourceDescription names, and none else
/// that lies beside them, so that copies of them are as good.  Reached by a cross-cast from IDesktopProduct.
class ISelfContainedSource {
public:
  virtual ~ISelfContainedSource() = default;
};

} // namespace desktop
