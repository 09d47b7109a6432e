#pragma once

#include "basekit/file/LongFileName.h"
#include "desktop/product/TransferredNetwork.h"

namespace desktop {

/// Which solved data of a project is wanted.
struct WantedData {
  LongFileName project;
  /// Empty: the only one that the project has.
  AString setup;
  /// Empty: the point at which the project's variables stand.
  AString variation;
  /// For whom, as the product hears it.
  AString consumer;
};

/// Solved data of a project as it was saved last, and where exactly it stands.
struct FetchedData {
  TransferredNetwork network;
  AString setup;
};

/// Opens the project for reading and asks its product.  Errors name the project: of kind kProject when it can't be
/// read, kUsage for an unknown setup, kFailed when there is no such data.
FetchedData FetchData(WantedData const & wanted);

/// Refused with ErrorKind::kLocked while a process has the project, this one or another, as what is saved there may
/// be about to change.
void RefuseProjectInUse(LongFileName const & project);

/// Whether data of `source` holds, across its own connections, data of `project`: then a connection of `project` to it
/// would close a circle.  Gives the way, "a -> b -> a"; empty without one.
AString CircleThrough(LongFileName const & project, LongFileName const & source);

} // namespace desktop
