#include "desktop/hub/Connection.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"

namespace desktop {

namespace {

AString const kConnection(L"Connection");
AString const kName(L"Name");
AString const kProject(L"Project");
AString const kSetup(L"Setup");
AString const kVariation(L"Variation");
AString const kDate(L"Taken");
AString const kFile(L"File");

bool ReadConnection(io::CBlock const & block, Connection & connection) {
  block >> io::named(kName, connection.name) >> io::named(kProject, connection.project) >>
      io::named(kSetup, connection.setup) >> io::named(kVariation, connection.variation) >>
      io::named(kDate, connection.date);
  bool const isWhole = block.Found() && !connection.name.empty() && !connection.project.empty();
  io::CBlock const * const fileBlock = block.FindBlock(kFile);
  io::CBlock const * const identifier = block.FindBlock(connection.identifier.GetItemName());
  SourceFiles files;
  if (!isWhole || !fileBlock || !identifier || !ReadSourceFiles(*fileBlock, files) || files.size() != 1)
    return false;
  connection.file = files.front();
  return connection.identifier.Read(*identifier) == io::kNoError;
}

} // namespace

LongFileName Connection::ProjectIn(LongFileName const & folder) const {
  return project.StartsWith(L"/") ? LongFileName(project) : folder + project;
}

void WriteConnections(Connections const & connections, io::CBlock & block) {
  for (Connection const & connection : connections) {
    io::CBlock item(kConnection);
    item << io::named(kName, connection.name) << io::named(kProject, connection.project)
         << io::named(kSetup, connection.setup) << io::named(kVariation, connection.variation)
         << io::named(kDate, connection.date);
    io::CBlock file(kFile);
    WriteSourceFiles({connection.file}, file);
    io::CBlock identifier(connection.identifier.GetItemName());
    connection.identifier.Write(identifier);
    item << file << identifier;
    block << item;
  }
}

Connections ReadConnections(io::CBlock const & block) {
  Connections connections;
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock> const item(child);
    Connection connection;
    if (item && item->Name() == kConnection && ReadConnection(*item, connection))
      connections.push_back(connection);
  }
  return connections;
}

} // namespace desktop
