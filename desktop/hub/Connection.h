#pragma once

#include "desktop/project/SourceFiles.h"
#include "solutionmanager/transfer/HubTransferConnectionIdentifier.h"

namespace desktop {

/// A connection of a project to another one: which solved data of that comes here, and the file that holds it.
struct Connection {
  AString name;
  /// The source's project file; known as SourceFile knows its files.
  AString project;
  AString setup;
  /// Empty: the point at which the source's variables stand.
  AString variation;
  /// When the data was taken, for people; see SourceBase.
  AString date;
  /// What was written, beside the source that is to read it.
  SourceFile file;
  HubTransferConnectionIdentifier identifier;

  LongFileName ProjectIn(LongFileName const & folder) const;
};

using Connections = std::vector<Connection>;

/// Items: one block "Connection" for each.
void WriteConnections(Connections const & connections, io::CBlock & block);
/// What is not as the writer makes it is left out.
Connections ReadConnections(io::CBlock const & block);

} // namespace desktop
