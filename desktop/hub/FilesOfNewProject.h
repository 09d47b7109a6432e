#pragma once

#include "basekit/file/LongFileName.h"

#include <vector>

namespace desktop {

struct ConnectionRequest;

/// The files of connections that a project is to be made with.  They are there before the project is, as its source
/// reads them; those that this wrote go again with it unless they are kept.
class FilesOfNewProject {
public:
  /// Where the source of the project to be lies.
  explicit FilesOfNewProject(LongFileName folder) : m_folder(std::move(folder)) {}
  ~FilesOfNewProject();
  FilesOfNewProject(FilesOfNewProject const &) = delete;
  FilesOfNewProject & operator=(FilesOfNewProject const &) = delete;

  /// Fetches the data and writes it.  Refused as Hub::Connect refuses it.
  void Write(ConnectionRequest const & request);
  void Keep() { m_written.clear(); }

private:
  LongFileName m_folder;
  std::vector<LongFileName> m_written;
};

} // namespace desktop
