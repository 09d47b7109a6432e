#include "desktop/hub/FilesOfNewProject.h"

#include "basekit/file/FileOperations.h"
#include "basekit/text/Utf8.h"
#include "desktop/hub/ConnectionSource.h"
#include "desktop/hub/FileExchange.h"
#include "desktop/hub/Hub.h"
#include "desktop/project/Project.h"

#include <new>

namespace desktop {

FilesOfNewProject::~FilesOfNewProject() {
  // One that stays, for want of memory for its path, too, is an ordinary file beside the source.
  try {
    for (LongFileName const & file : m_written)
      LFN_DeleteFile(file);
  } catch (std::bad_alloc const &) {
  }
}

void FilesOfNewProject::Write(ConnectionRequest const & request) {
  Hub::RefuseNoPlainName(request.name);
  LongFileName const source = Project(request.project).GetFile();
  RefuseProjectInUse(source);
  TransferredNetwork const network = FetchData({source, request.setup, request.variation, request.name}).network;
  LongFileName const file = m_folder + (request.name + network.extension);
  std::string const content = text::ToUtf8(network.text);
  Hub::RefuseForeignFile(file, content);
  if (BytesOf(file))
    return;
  FileExchange(file, content).Exchange();
  m_written.push_back(file);
}

} // namespace desktop
