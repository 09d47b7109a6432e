#pragma once

#include "CoreInterfaces/IInterfaceQueriable.h"
#include "basekit/file/LongFileName.h"
#include "basekit/text/AString.h"

/// Files whose life is tied to saving the design: what is created or deleted becomes final at the next save.
class IManagedFileService : public IInterfaceQueriable {
public:
  virtual bool CreateManagedFile(AString & fileName, AString const & baseDir, AString const & extension) = 0;
  virtual bool DeleteManagedFile(AString const & baseDir, AString const & fileName) = 0;
  virtual LongFileName GetFullPathForManagedFile(AString const & baseDir, AString const & fileName) = 0;
  virtual LongFileName GetManagedFilesDir() { return LongFileName(); }
  virtual AString GetManagedFilesRelativeDir() { return AString(); }
};
